# SPDX-FileCopyrightText: 2026 The velmora-share developers
#
# SPDX-License-Identifier: MIT

# The single entry: every target installs what it needs first.
PRESET ?= default
BUILD_DIR = build/$(PRESET)

# ccache (when the build finds it) names files relative to this checkout, so objects compiled in
# one checkout or preset folder serve every other one with the same flags.
export CCACHE_BASEDIR := $(CURDIR)
export CCACHE_NOHASHDIR := 1

.PHONY: all bootstrap configure build program test run asan tsan fuzz bench deb coverage format clean

all: build

bootstrap:
	@scripts/bootstrap

configure: bootstrap
	cmake --preset $(PRESET)

# Everything: the program, the tests and (default preset) the benchmarks.
build: configure
	cmake --build --preset $(PRESET)

# Only the program, so that the composer appears as soon as it is linked.
program: configure
	cmake --build --preset $(PRESET) --target velmora-share

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

run: program
	scripts/run-demo $(BUILD_DIR)

bench: build
	scripts/run-benchmarks $(BUILD_DIR)

fuzz: bootstrap
	cmake --preset fuzz && cmake --build --preset fuzz
	scripts/run-fuzzers build/fuzz $(or $(FUZZ_SECONDS),60)

# The Debian package, checked by lintian; the .deb files land in build/deb/.
deb: bootstrap
	scripts/build-deb

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')

clean:
	rm -rf build
