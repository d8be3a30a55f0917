# Tilmora's two everyday commands: `make run` and `make test`.
# Everything else (configure, build, sanitizer run, benchmarks) hangs off these targets.

BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
FUZZ_DIR ?= build-fuzz
FUZZ_SECONDS ?= 15
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: all bootstrap configure build test test-sanitize fuzz bench run format clean

all: build

bootstrap:
	@scripts/bootstrap.sh

configure: bootstrap
	@cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_FLAGS)

build: configure
	@cmake --build $(BUILD_DIR) --parallel $(JOBS)

test: build
	@ctest --test-dir $(BUILD_DIR) --output-on-failure --parallel $(JOBS) --timeout 300

# The unit tests once more, built with AddressSanitizer and UndefinedBehaviorSanitizer.
test-sanitize: bootstrap
	@cmake -S . -B $(SANITIZE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTILMORA_SANITIZE=ON \
		-DTILMORA_BUILD_BENCHMARKS=OFF $(CMAKE_FLAGS)
	@cmake --build $(SANITIZE_DIR) --parallel $(JOBS)
	@ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
		ctest --test-dir $(SANITIZE_DIR) --label-regex unit --output-on-failure \
		--parallel $(JOBS) --timeout 600

# Every decoder of stored or fetched data under libFuzzer (clang), FUZZ_SECONDS each.
fuzz: bootstrap
	@cmake -S . -B $(FUZZ_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTILMORA_FUZZ=ON \
		-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
		-DTILMORA_BUILD_TESTS=OFF -DTILMORA_BUILD_BENCHMARKS=OFF $(CMAKE_FLAGS)
	@cmake --build $(FUZZ_DIR) --parallel $(JOBS) --target fuzzers
	@scripts/fuzz.sh $(FUZZ_DIR) $(FUZZ_SECONDS)

bench: build
	@scripts/run-benchmarks.sh $(BUILD_DIR)

# Only the application (the client and the two programs it becomes), not the tests.
run: configure
	@cmake --build $(BUILD_DIR) --parallel $(JOBS) --target tilmora
	@scripts/run.sh $(BUILD_DIR)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	@rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(FUZZ_DIR)
