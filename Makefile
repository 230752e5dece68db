# Entry points: `make run` builds and starts the program, `make test` installs what is
# missing, builds and runs every test (plain, then under ASan and UBSan), `make bench`
# builds and runs the benchmarks.
BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
JOBS ?= $(shell nproc)

.PHONY: all deps build build-sanitize run test test-plain test-sanitize bench format format-check clean

all: build

deps:
	@scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
	@cmake --build $(BUILD_DIR) -j $(JOBS)

build-sanitize: deps
	@cmake -S . -B $(SANITIZE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DNERIVANE_SANITIZE=ON >/dev/null
	@cmake --build $(SANITIZE_DIR) -j $(JOBS)

run: build
	@$(BUILD_DIR)/src/cli/nerivane-cli --help

test-plain: build
	@ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

test-sanitize: build-sanitize
	@ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
		ctest --test-dir $(SANITIZE_DIR) --output-on-failure -j $(JOBS)

test: format-check test-plain test-sanitize

bench: build
	@for program in $(BUILD_DIR)/bench/*_bench; do $$program --benchmark_min_time=0.2; done

SOURCES = $(shell find src tests bench -name '*.cpp' -o -name '*.h')

format:
	@clang-format -i $(SOURCES)

format-check: deps
	@clang-format --dry-run -Werror $(SOURCES)

clean:
	@rm -rf $(BUILD_DIR) $(SANITIZE_DIR)
