#pragma once

namespace shell {

// The life of the process, in order; returns the exit status.
int main(int argc, char** argv);

}  // namespace shell
