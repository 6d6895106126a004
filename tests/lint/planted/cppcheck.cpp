// Planted for script/lint, which trusts cppcheck only once it has found this.
//
// Must be reported: [nullPointerRedundantCheck]
// Must be reported: [memleak]

int ReadBeforeAsking(int const* pointer)
{
    int const value = *pointer;
    return pointer != nullptr ? value : 0;
}

int ForgetABlock(int size)
{
    char* const block = new char[8];
    return block[0] + size;
}
