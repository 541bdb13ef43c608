# Shortcuts for the two commands of the README.
.PHONY: run test
run:
	scripts/run.sh
test:
	scripts/test.sh
