#include "bench_support.h"

int main(int argc, char** argv) { return qtabench::runWithRatios(argc, argv); }
