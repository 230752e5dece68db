# Entry points: `make run` builds and starts the program, `make test` installs what is
# missing, builds and runs every test (plain, then under ASan and UBSan), `make bench`
# builds and runs the benchmarks, `make package` builds the Debian package.
BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
FUZZ_DIR ?= build-fuzz
NOGUI_DIR ?= build-nogui
FUZZ_SECONDS ?= 20
FUZZ_TARGETS = Designfile_fuzz Settings_fuzz Readers_fuzz Roundtrip_fuzz
JOBS ?= $(shell nproc)

.PHONY: all deps build build-sanitize run package test test-plain test-sanitize test-nogui fuzz bench format format-check clean

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
	@$(BUILD_DIR)/src/gui/nerivane

# The .deb of the plain Release build, beside it in $(BUILD_DIR).
package: build
	@cd $(BUILD_DIR) && cpack -G DEB

test-plain: build
	@ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

test-sanitize: build-sanitize
	@ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
		ctest --test-dir $(SANITIZE_DIR) --output-on-failure -j $(JOBS)

# The core, the command line and their tests without Qt Widgets, as a machine without a desktop
# builds them.
test-nogui: deps
	@cmake -S . -B $(NOGUI_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release -DNERIVANE_GUI=OFF \
		-DNERIVANE_BENCH=OFF >/dev/null
	@cmake --build $(NOGUI_DIR) -j $(JOBS)
	@ctest --test-dir $(NOGUI_DIR) --output-on-failure -j $(JOBS)

# Each fuzz target runs for FUZZ_SECONDS from the committed corpus; what it finds new goes to
# a scratch folder, so the committed corpus only changes by hand.
fuzz: deps
	@cmake -S . -B $(FUZZ_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
		-DNERIVANE_FUZZ=ON -DNERIVANE_GUI=OFF -DNERIVANE_BENCH=OFF >/dev/null
	@cmake --build $(FUZZ_DIR) -j $(JOBS) --target $(FUZZ_TARGETS)
	@for target in $(FUZZ_TARGETS); do \
		scratch=$$(mktemp -d); \
		if ! $(FUZZ_DIR)/fuzz/$$target -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 \
			$$scratch fuzz/corpus/$$target > $$scratch.log 2>&1; then \
			tail -40 $$scratch.log; exit 1; \
		fi; \
		echo "$$target: $$(grep -c . $$scratch.log) log lines, no crash"; \
		rm -rf $$scratch $$scratch.log; \
	done

test: format-check test-plain test-sanitize test-nogui fuzz

bench: build
	@for program in $(BUILD_DIR)/bench/*_bench; do $$program --benchmark_min_time=0.2; done

SOURCES = $(shell find src tests bench -name '*.cpp' -o -name '*.h')

format:
	@clang-format -i $(SOURCES)

format-check: deps
	@clang-format --dry-run -Werror $(SOURCES)

clean:
	@rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(NOGUI_DIR) $(FUZZ_DIR)
