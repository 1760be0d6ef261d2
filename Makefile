# The single entry: every target installs what it needs first.
PRESET ?= default
BUILD_DIR = build/$(PRESET)

.PHONY: all bootstrap configure build test run asan tsan coverage fuzz bench format clean

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

# Line and branch coverage of src/ over the whole suite: a text summary here, the HTML report in
# build/coverage/report/index.html. Counters from an earlier run are cleared first.
# Branches that only throw or that the compiler proves unreachable are left out of the count.
coverage: bootstrap
	cmake --preset coverage
	cmake --build --preset coverage
	find build/coverage -name '*.gcda' -delete
	ctest --preset coverage
	mkdir -p build/coverage/report
	gcovr --root . --object-directory build/coverage --filter 'src/' -j 2 \
	    --exclude-unreachable-branches --exclude-throw-branches \
	    --html-details build/coverage/report/index.html \
	    --json build/coverage/report/coverage.json \
	    --json-summary-pretty --json-summary build/coverage/report/summary.json \
	    --txt build/coverage/report/files.txt --print-summary

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
