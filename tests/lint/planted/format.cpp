// Planted for script/lint, which trusts clang-format only once it has found this.
//
// Must be reported: -Wclang-format-violations

int  main( ) { return 0 ;}
