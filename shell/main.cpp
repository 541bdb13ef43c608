#include "shell/Startup.h"

int main(int argc, char** argv) { return shell::main(argc, argv); }
