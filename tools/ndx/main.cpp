#include "tools/ndx/CommandLine.h"

int main(int argc, char** argv) {
  nd::tools::prepareStandardStreams();
  nd::tools::FileOutput out(1);
  nd::tools::FileOutput err(2);
  return nd::tools::run(std::vector<std::string>(argc == 0 ? argv : argv + 1, argv + argc), out, err);
}
