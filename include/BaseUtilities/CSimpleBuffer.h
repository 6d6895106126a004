#pragma once

#include <BaseUtilities/Export.h>

/// Scratch bytes for building messages: a byte array that grows in steps of
/// 1024 bytes. A work area, not a container: growing loses the contents, no
/// length is kept beside the capacity, and nothing checks bounds.
///
/// Threads: one at a time; message building keeps a buffer per thread.
class BASEUTILITIES_EXPORT CSimpleBuffer
{
public:
    /// Empty: no array, size 0.
    CSimpleBuffer() = default;
    /// Copies the whole array. Throws std::bad_alloc.
    CSimpleBuffer(CSimpleBuffer const& other);
    /// Copies the whole array of `other` to the start of this one, which keeps
    /// its own when that is larger; an empty `other` releases it.
    /// Throws std::bad_alloc and then holds no array.
    CSimpleBuffer& operator=(CSimpleBuffer const& other);
    ~CSimpleBuffer();

    /// The start of at least `wanted` bytes; an array large enough is kept with
    /// its contents. Throws std::bad_alloc and then holds no array.
    /// Deliberate: the new size is recorded first, so after such a failure a
    /// call for no more than that returns null instead of trying again.
    char* Resize(unsigned long wanted);
    /// Same as Resize: `wanted` is a size, not an offset.
    char* Get(unsigned long wanted);

    /// Equal sizes and equal bytes over the whole capacity.
    /// Deliberate: an empty buffer equals nothing, not even itself.
    friend BASEUTILITIES_EXPORT bool operator==(CSimpleBuffer const& left,
                                                CSimpleBuffer const& right);
    friend bool operator!=(CSimpleBuffer const& left, CSimpleBuffer const& right)
    {
        return !(left == right);
    }

private:
    char* m_pBuffer = nullptr; // owned, array new
    unsigned long m_Size = 0;  // bytes
};
