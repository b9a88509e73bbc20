# Front door of the project: `make demo` and `make test` work on a fresh machine.
JOBS ?= $(shell nproc)
RELEASE_DIR := build/release
TEST_DIR := build/test
BENCH_DIR := build/bench
FUZZ_DIR := build/fuzz
DEMO_INPUT := examples/Velmor-Sample.velmor
DEMO_MASTERS_INPUT := examples/Velmor-Sample-Masters.velmor
DEMO_COMPOSITES_INPUT := examples/Velmor-Composites.velmor
DEMO_BRACE_INPUT := examples/Velmor-Brace.velmor
DEMO_SMART_INPUT := examples/Velmor-Smart.velmor
DEMO_CORNERS_INPUT := examples/Velmor-Corners.velmor

.PHONY: all deps release demo test bench bench-run clean

all: release

deps:
	./scripts/install-deps.sh

release: deps
	cmake -S . -B $(RELEASE_DIR) -DCMAKE_BUILD_TYPE=Release -DVELMOR_TESTS=OFF >/dev/null
	cmake --build $(RELEASE_DIR) -j $(JOBS)

demo: release
	$(RELEASE_DIR)/velmor-thumbnailer -s 256 $(DEMO_INPUT) build/demo.png
	$(RELEASE_DIR)/velmor-thumbnailer -s 256 $(DEMO_MASTERS_INPUT) build/demo-masters.png
	$(RELEASE_DIR)/velmor-thumbnailer -s 256 $(DEMO_COMPOSITES_INPUT) build/demo-composites.png
	$(RELEASE_DIR)/velmor-thumbnailer -s 256 $(DEMO_BRACE_INPUT) build/demo-brace.png
	$(RELEASE_DIR)/velmor-thumbnailer -s 256 $(DEMO_SMART_INPUT) build/demo-smart.png
	$(RELEASE_DIR)/velmor-thumbnailer -s 256 $(DEMO_CORNERS_INPUT) build/demo-corners.png
	$(RELEASE_DIR)/velmor-proof $(DEMO_MASTERS_INPUT) build/proof-sheet.png
	$(RELEASE_DIR)/velmor-proof --text 'gAg\nAgA' $(DEMO_MASTERS_INPUT) build/proof-text.svg
	$(RELEASE_DIR)/velmor-proof --instance Regular --text 'AgA' $(DEMO_MASTERS_INPUT) build/proof-instance.png
	$(RELEASE_DIR)/velmor-proof --all --text 'Ag' $(DEMO_MASTERS_INPUT) build/proof-all.pdf
	$(RELEASE_DIR)/velmor-proof --all --text 'Ag' $(DEMO_MASTERS_INPUT) build/proof-all.png
	$(RELEASE_DIR)/velmor-proof --glyphs $(DEMO_COMPOSITES_INPUT) build/proof-glyphs.png
	@echo "wrote build/demo.png, build/demo-masters.png, build/demo-composites.png, build/demo-brace.png,"
	@echo "build/demo-smart.png, build/demo-corners.png and the proofs build/proof-*"

test: deps
	cmake -S . -B $(TEST_DIR) -DCMAKE_BUILD_TYPE=Debug -DVELMOR_SANITIZE=ON >/dev/null
	cmake --build $(TEST_DIR) -j $(JOBS)
	cd $(TEST_DIR) && ctest --output-on-failure -j $(JOBS)

bench: deps
	cmake -S . -B $(BENCH_DIR) -DCMAKE_BUILD_TYPE=Release -DVELMOR_TESTS=OFF -DVELMOR_BENCH=ON >/dev/null
	cmake --build $(BENCH_DIR) -j $(JOBS)

# Medians of five runs, since the machine's two cores are shared.
BENCH_ARGS ?= --benchmark_repetitions=5 --benchmark_report_aggregates_only=true

bench-run: bench
	cmake --build $(BENCH_DIR) --target velmor-bench-documents
	for b in $(BENCH_DIR)/bench/bench_*; do $$b $(BENCH_ARGS) || exit 1; done

clean:
	rm -rf build

# Desktop integration: `make install` (PREFIX, DESTDIR) and `make uninstall`.
PREFIX ?= /usr/local
MIME_DIR = $(DESTDIR)$(PREFIX)/share/mime
# Uninstall goes by this list rather than the build's manifest, so that it needs no build and
# acts on the PREFIX and DESTDIR it is given.
INSTALLED_FILES = bin/velmor-thumbnailer share/thumbnailers/velmor.thumbnailer share/mime/packages/velmor-source.xml
UPDATE_MIME = if command -v update-mime-database >/dev/null && [ -d "$(MIME_DIR)/packages" ]; then update-mime-database "$(MIME_DIR)"; fi

.PHONY: install uninstall

install: release
	DESTDIR="$(DESTDIR)" cmake --install $(RELEASE_DIR) --prefix "$(PREFIX)"
	$(UPDATE_MIME)
	@case "$(PREFIX)/" in /usr/*) ;; *) echo "warning: GNOME Files runs thumbnailers in a sandbox that sees only /usr, so it won't use this install; file browsers that ask tumbler will, once $(PREFIX)/share is in XDG_DATA_DIRS" ;; esac

# A Debian package of the release build, in build/: make deb && sudo apt install ./build/velmor-thumbnailer_*.deb
.PHONY: deb
deb: release
	cd $(RELEASE_DIR) && cpack -G DEB -B $(CURDIR)/build

uninstall:
	rm -f $(addprefix "$(DESTDIR)$(PREFIX)/,$(addsuffix ",$(INSTALLED_FILES)))
	$(UPDATE_MIME)

# Fuzzing with libFuzzer (clang only). Each target grows its own corpus in the build folder from
# the seeds in fuzz/corpus/; a crash, a hang or an exhausted memory stops the run with an error.
FUZZ_TARGETS = plist_parser document_read document_draw
FUZZ_SECONDS ?= 60
FUZZ_FLAGS ?= -dict=fuzz/velmor.dict -timeout=10 -rss_limit_mb=1024 -print_final_stats=1 -artifact_prefix=$(FUZZ_DIR)/artifacts/

.PHONY: fuzz fuzz-smoke

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMOR_FUZZ=ON -DVELMOR_TESTS=OFF >/dev/null
	cmake --build $(FUZZ_DIR) -j $(JOBS)

fuzz-smoke: fuzz
	mkdir -p $(FUZZ_DIR)/artifacts
	for t in $(FUZZ_TARGETS); do \
	  mkdir -p $(FUZZ_DIR)/corpus/$$t && \
	  $(FUZZ_DIR)/fuzz/fuzz_$$t $(FUZZ_FLAGS) -max_total_time=$(FUZZ_SECONDS) $(FUZZ_DIR)/corpus/$$t fuzz/corpus/$$t || exit 1; \
	done
