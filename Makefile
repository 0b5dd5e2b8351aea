# The front door: make run ARGS="...", make test, make bench, make fuzz,
# make package, make install PREFIX=...
# Each target installs missing Debian packages, configures, builds, then runs.

BUILD      ?= build
ASAN_BUILD ?= build-asan
QT5_BUILD  ?= build-qt5
TSAN_BUILD ?= build-tsan
DEB_BUILD  ?= build-deb
BENCH_BUILD ?= build-bench
FUZZ_BUILD ?= build-fuzz
DEBIAN13_BUILD ?= build-debian13
ARM64_BUILD ?= build-arm64
WINDOWS_BUILD ?= build-windows
JOBS       ?= $(shell nproc)
CMAKE_FLAGS ?=
# CI (CI=true) builds the native legs with warnings as errors; CMake holds
# to that with GCC 12 (Debian 12's) only and ignores it for other compilers.
WERROR_FLAGS := $(if $(filter true,$(CI)),-DKZBS_WERROR=ON)

.PHONY: all deps build run tidy test test-normal test-asan test-qt5 test-tsan test-ports test-debian13 test-arm64 test-windows bench fuzz install package abi-record clean

all: build

deps:
	@./scripts/deps.sh

$(BUILD)/build.ninja: | deps
	@cmake -S . -B $(BUILD) -G Ninja -DKZBS_QT_VERSION=6 $(WERROR_FLAGS) $(CMAKE_FLAGS) >&2

build: deps $(BUILD)/build.ninja
	@cmake --build $(BUILD) -j $(JOBS) >&2

# Build output goes to stderr, so stdout is kzbs's own.
run: build
	@./$(BUILD)/tools/kzbs/kzbs $(ARGS)

# clang-tidy 14 (.clang-tidy) over the library's and kzbs's sources with the
# compile database of $(BUILD); any finding fails. Minutes long, so it runs
# beside the suite, not in it.
tidy: build
	@./scripts/deps.sh tidy
	@cmake -S . -B $(BUILD) -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >&2
	nice -n 10 run-clang-tidy-14 -p $(BUILD) -j $(JOBS) -quiet '^$(CURDIR)/(src|tools)/'

# Qt 6, Qt 6 under the sanitizers, Qt 5, then the core library under
# ThreadSanitizer, each in its own build folder.
test: test-normal test-asan test-qt5 test-tsan

test-normal: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

# The whole suite again under AddressSanitizer + UndefinedBehaviorSanitizer,
# halting on the first report.
test-asan: deps
	@cmake -S . -B $(ASAN_BUILD) -G Ninja -DKZBS_QT_VERSION=6 -DCMAKE_BUILD_TYPE=Debug -DKZBS_SANITIZE=ON $(WERROR_FLAGS) $(CMAKE_FLAGS) >&2
	@cmake --build $(ASAN_BUILD) -j $(JOBS) >&2
	ASAN_OPTIONS=halt_on_error=1:abort_on_error=1:detect_leaks=1 \
	UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp \
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS)

test-qt5: deps
	@cmake -S . -B $(QT5_BUILD) -G Ninja -DKZBS_QT_VERSION=5 $(WERROR_FLAGS) $(CMAKE_FLAGS) >&2
	@cmake --build $(QT5_BUILD) -j $(JOBS) >&2
	ctest --test-dir $(QT5_BUILD) --output-on-failure -j $(JOBS)

# The core library (Qt is not instrumented, so it stays out) and its suite,
# with the concurrency test, under ThreadSanitizer, halting on the first
# report. An optimised build, unlike the ASan one, and with -funsigned-char:
# char is unsigned on Linux for ARM, and the answers must not change.
test-tsan: deps
	@cmake -S . -B $(TSAN_BUILD) -G Ninja -DKZBS_WITH_QT=OFF -DKZBS_TSAN=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS=-funsigned-char $(WERROR_FLAGS) $(CMAKE_FLAGS) >&2
	@cmake --build $(TSAN_BUILD) -j $(JOBS) >&2
	TSAN_OPTIONS=halt_on_error=1:abort_on_error=1:second_deadlock_stack=1 \
	ctest --test-dir $(TSAN_BUILD) --output-on-failure -j $(JOBS)

# The suite on other platforms than the host's, one target per platform.
test-ports: test-debian13 test-windows test-arm64

# The suite and the packages on Debian 13 (trixie), in a root made once under
# $(DEBIAN13_BUILD)/root (see scripts/debian13.sh). To stay within CI's time
# it runs the Qt 6 suite alone; DEBIAN13_SUITE=test runs all of make test.
DEBIAN13_SUITE ?= test-normal
test-debian13:
	@./scripts/deps.sh debian13
	./scripts/debian13.sh $(DEBIAN13_BUILD) $(DEBIAN13_SUITE) package

# The whole library with Qt 6, kzbs and the suite cross-built for Linux on
# ARM64 and run under qemu-user, in a Debian 12 root with the arm64
# architecture, made once under $(ARM64_BUILD)/root (see scripts/arm64.sh).
test-arm64:
	@./scripts/deps.sh arm64
	JOBS=$(JOBS) ./scripts/arm64.sh $(ARM64_BUILD)
# The core library, its suite and the kzbs commands that need no Qt, for
# Windows x64: cross-compiled with MinGW-w64 (cmake/mingw-w64-x86_64.cmake),
# an optimised build, run by ctest under Wine in a prefix of its own in
# $(WINDOWS_BUILD)/wineprefix, made before the build asks the test programs
# for their tests.
test-windows:
	@./scripts/deps.sh windows
	@cmake -S . -B $(WINDOWS_BUILD) -G Ninja -DKZBS_WITH_QT=OFF -DCMAKE_BUILD_TYPE=Release \
	       -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake $(CMAKE_FLAGS) >&2
	@./scripts/wine-run.sh $(CURDIR)/$(WINDOWS_BUILD)/wineprefix
	@cmake --build $(WINDOWS_BUILD) -j $(JOBS) >&2
	# Wine now and then fails to start a program at all (no output, exit in
	# 10 ms); a failed test is run once more, so a real fault, which fails
	# both times, still fails the leg, and ctest names any test it repeated.
	ctest --test-dir $(WINDOWS_BUILD) --output-on-failure -j $(JOBS) --repeat until-pass:2

bench:
	@./scripts/deps.sh bench
	@cmake -S . -B $(BENCH_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release -DKZBS_BUILD_TESTS=OFF -DKZBS_BUILD_BENCH=ON >&2
	@cmake --build $(BENCH_BUILD) -j $(JOBS) >&2
	@for b in $(BENCH_BUILD)/bench/bench_*; do [ -x "$$b" ] && "$$b" $(BENCH_ARGS); done
	@./bench/grep_end_to_end.sh $(BENCH_BUILD)

# Each fuzz target for FUZZ_SECONDS (clang's libFuzzer), with its corpus from
# fuzz/corpus; see fuzz/run.sh for FUZZ_CPU_SECONDS, FUZZ_JOBS, FUZZ_NICE,
# FUZZ_FLAGS. FUZZ_TARGETS picks targets by name (default: all).
# Example: make fuzz FUZZ_SECONDS=600 FUZZ_JOBS=2 FUZZ_NICE=10
FUZZ_SECONDS ?= 60
FUZZ_CPU_SECONDS ?= 0
FUZZ_JOBS ?= 1
FUZZ_NICE ?= 0
FUZZ_FLAGS ?=
FUZZ_TARGETS ?=
fuzz:
	@./scripts/deps.sh fuzz
	@cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-g -O1" -DCMAKE_CXX_COMPILER=clang++ -DKZBS_BUILD_TESTS=OFF -DKZBS_BUILD_FUZZ=ON >&2
	@nice -n $(FUZZ_NICE) cmake --build $(FUZZ_BUILD) -j $(JOBS) >&2
	@FUZZ_SECONDS=$(FUZZ_SECONDS) FUZZ_CPU_SECONDS=$(FUZZ_CPU_SECONDS) FUZZ_JOBS=$(FUZZ_JOBS) \
	 FUZZ_NICE=$(FUZZ_NICE) FUZZ_FLAGS="$(FUZZ_FLAGS)" ./fuzz/run.sh $(FUZZ_BUILD) $(FUZZ_TARGETS)

install: build
	cmake --install $(BUILD) $(if $(PREFIX),--prefix $(PREFIX))

# The five Debian packages (debian/), built from a copy of the tracked files
# so that nothing is written beside the work tree, then checked by lintian.
# They land in $(DEB_BUILD)/.
package:
	@./scripts/deps.sh package
	rm -rf $(DEB_BUILD) && mkdir -p $(DEB_BUILD)/source
	git ls-files -z | tar --null -T - -cf - | tar -xf - -C $(DEB_BUILD)/source
	cd $(DEB_BUILD)/source && DEB_BUILD_OPTIONS="parallel=$(JOBS)" dpkg-buildpackage -b -us -uc >&2
	lintian --info $(DEB_BUILD)/*.changes
	@ls -1 $(DEB_BUILD)/*.deb

# Records the ABI of the Qt 6 build as the one promised under its SONAME.
# Run it on purpose only: after a SONAME bump, or to take in additions.
abi-record: build
	soname=$$(objdump -p $(BUILD)/src/libKzBasicServices.so | awk '$$1 == "SONAME" { print $$2 }') && \
	abidw --headers-dir include --drop-private-types --suppressions abi/foreign.suppr --no-corpus-path --type-id-style hash \
	      --out-file abi/$$soname.abi $(BUILD)/src/libKzBasicServices.so

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(QT5_BUILD) $(TSAN_BUILD) $(DEB_BUILD) $(BENCH_BUILD) $(FUZZ_BUILD)
