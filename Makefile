# The front door: make run ARGS="...", make test, make bench, make fuzz.
# Each target installs missing Debian packages, configures, builds, then runs.

BUILD      ?= build
ASAN_BUILD ?= build-asan
BENCH_BUILD ?= build-bench
FUZZ_BUILD ?= build-fuzz
JOBS       ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: all deps build run test test-normal test-asan bench fuzz install clean

all: build

deps:
	@./scripts/deps.sh

$(BUILD)/build.ninja: | deps
	@cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS) >&2

build: deps $(BUILD)/build.ninja
	@cmake --build $(BUILD) -j $(JOBS) >&2

# Build output goes to stderr, so stdout is kzbs's own.
run: build
	@./$(BUILD)/tools/kzbs/kzbs $(ARGS)

test: test-normal test-asan

test-normal: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

# The whole suite again under AddressSanitizer + UndefinedBehaviorSanitizer,
# halting on the first report.
test-asan: deps
	@cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKZBS_SANITIZE=ON $(CMAKE_FLAGS) >&2
	@cmake --build $(ASAN_BUILD) -j $(JOBS) >&2
	ASAN_OPTIONS=halt_on_error=1:abort_on_error=1:detect_leaks=1 \
	UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp \
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS)

bench:
	@./scripts/deps.sh bench
	@cmake -S . -B $(BENCH_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release -DKZBS_BUILD_TESTS=OFF -DKZBS_BUILD_BENCH=ON >&2
	@cmake --build $(BENCH_BUILD) -j $(JOBS) >&2
	@for b in $(BENCH_BUILD)/bench/bench_*; do [ -x "$$b" ] && "$$b" $(BENCH_ARGS); done

# Each fuzzer for FUZZ_SECONDS (clang's libFuzzer).
FUZZ_SECONDS ?= 60
fuzz:
	@./scripts/deps.sh fuzz
	@cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ -DKZBS_BUILD_TESTS=OFF -DKZBS_BUILD_FUZZ=ON >&2
	@cmake --build $(FUZZ_BUILD) -j $(JOBS) >&2
	@for f in $(FUZZ_BUILD)/fuzz/fuzz_*; do [ -x "$$f" ] && "$$f" -max_total_time=$(FUZZ_SECONDS) || exit 1; done

install: build
	cmake --install $(BUILD) $(if $(PREFIX),--prefix $(PREFIX))

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(BENCH_BUILD) $(FUZZ_BUILD)
