# The two commands that matter: `make run` and `make test`. Both install what
# is missing, configure and build first.
BUILD ?= build
JOBS ?= $(shell nproc)
WERROR ?= OFF
CMAKE_FLAGS ?=

.PHONY: all deps configure build install run test check-asan bench fuzz screenshots format clean

all: build

deps:
	@scripts/install-deps

$(BUILD)/build.ninja: CMakeLists.txt | deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DQUILLORA_WERROR=$(WERROR) $(CMAKE_FLAGS)

configure: deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DQUILLORA_WERROR=$(WERROR) $(CMAKE_FLAGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

# PREFIX=/usr/local by default; DESTDIR stages the files elsewhere.
PREFIX ?= /usr/local
install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

run: build
	./$(BUILD)/quillora $(ARGS)

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

check-asan: deps
	cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUILLORA_SANITIZE=ON \
	  -DQUILLORA_WERROR=$(WERROR)
	cmake --build build-asan -j $(JOBS)
	cd build-asan && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS)

bench: deps
	cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUILLORA_BENCH=ON \
	  -DQUILLORA_WERROR=ON
	cmake --build build-bench -j $(JOBS)
	./build-bench/bench/quillora_bench

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug \
	  -DQUILLORA_FUZZ=ON
	cmake --build build-fuzz -j $(JOBS)

screenshots: build
	./$(BUILD)/app/gui/quillora_screenshots docs/screenshots

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) build-asan build-bench build-fuzz
