# The single entry: every target installs what it needs first.
PRESET ?= default
BUILD_DIR = build/$(PRESET)

.PHONY: all bootstrap configure build test run asan tsan fuzz bench format clean

all: build

bootstrap:
	@scripts/bootstrap

configure: bootstrap
	cmake --preset $(PRESET)

build: configure
	cmake --build --preset $(PRESET)

test: build
	ctest --preset $(PRESET)

asan:
	$(MAKE) test PRESET=asan

tsan:
	$(MAKE) test PRESET=tsan

run: build
	scripts/run-demo $(BUILD_DIR)

bench: build
	scripts/run-benchmarks $(BUILD_DIR)

fuzz: bootstrap
	cmake --preset fuzz && cmake --build --preset fuzz
	scripts/run-fuzzers build/fuzz $(or $(FUZZ_SECONDS),60)

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')

clean:
	rm -rf build
