#include <BaseUtilities/CMemWrapper.h>

#include <cstdlib>
#include <new>

void* CMemWrapper::AllocateMemory(unsigned long size, bool zeroFill)
{
    if (size == 0)
        return nullptr;
    void* const block = zeroFill ? std::calloc(size, 1) : std::malloc(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void CMemWrapper::ReleaseMemory(void*& block)
{
    if (block == nullptr)
        return;
    std::free(block);
    block = nullptr;
}
