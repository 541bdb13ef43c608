# Shortcuts for the two commands of the README.
.PHONY: run test
run:
	scripts/run.sh
test:
	scripts/test.sh
# The speed benchmarks (not part of CI): figures into bench/RESULTS.md.
.PHONY: bench
bench:
	bench/speed/run.sh
