/// @file
/// A program that only reads its command line; see start_benchmark.

#include <tarvos/core/parser/CmdLineParser.h>

int main(int argc, char** argv) {
    tarvos::core::parser::CmdLineParser parser(argc, argv);
    parser.parse();
}
