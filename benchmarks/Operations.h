#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Describe.h"

/// One way of doing an operation: the library's, the floor's or a peer's.
struct CContender
{
    std::string m_Name;
    std::function<void(std::size_t)> m_Repeat; ///< does it so many times
    std::function<std::string()> m_Result;     ///< does it once and tells what came out
};

/// When an operation is too much for a shorter run.
enum class EWeight { Light, Heavy };

/// An operation of the library with everything it is measured against.
class COperation
{
public:
    static constexpr int AsFloor = -1;

    COperation(std::string area, std::string name)
        : m_Area(std::move(area)),
          m_Name(std::move(name))
    {
    }

    template <class Body>
    COperation& Library(Body body)
    {
        return Add("library", std::move(body));
    }
    template <class Body>
    COperation& Floor(Body body)
    {
        return Add("floor", std::move(body));
    }
    template <class Body>
    COperation& Peer(std::string name, Body body)
    {
        return Add(std::move(name), std::move(body));
    }
    /// How many heap blocks the promised steps take, releases apart.
    COperation& Allocates(int count)
    {
        m_Allocations = count;
        return *this;
    }
    /// Bodies then run on so many threads at once, and must be free to.
    COperation& OnThreads(int count)
    {
        m_Threads = count;
        return *this;
    }
    COperation& Weighs(EWeight weight)
    {
        m_Weight = weight;
        return *this;
    }
    /// What was written before has to be on the disk before each repetition.
    COperation& OnDisk()
    {
        m_OnDisk = true;
        return *this;
    }
    /// Most of it is the kernel's or another process's: no count of instructions tells anything.
    COperation& InKernel()
    {
        m_InKernel = true;
        return *this;
    }

    std::string m_Area;
    std::string m_Name;
    std::vector<CContender> m_Contenders;
    int m_Allocations = AsFloor;
    int m_Threads = 1;
    EWeight m_Weight = EWeight::Light;
    bool m_OnDisk = false;
    bool m_InKernel = false;

private:
    template <class Body>
    COperation& Add(std::string name, Body body)
    {
        m_Contenders.push_back({std::move(name),
                                [body](std::size_t count) mutable {
                                    for (; count != 0; --count)
                                        Consume(body);
                                },
                                [body]() mutable { return DescribeResult(body); }});
        return *this;
    }

    // The loop above is all that is measured beside the body: no call, and nothing optimised away.
    template <class Body>
    static void Consume(Body& body)
    {
        auto&& result = body();
        asm volatile("" : : "r"(&result) : "memory");
    }

    template <class Body>
    static std::string DescribeResult(Body& body)
    {
        auto&& result = body();
        return Describe(result);
    }
};

/// All operations, in the order of the report.
class CCatalogue
{
public:
    CCatalogue();

    COperation& Add(std::string area, std::string name)
    {
        return m_Operations.emplace_back(std::move(area), std::move(name));
    }
    std::deque<COperation> const& Operations() const { return m_Operations; }

private:
    std::deque<COperation> m_Operations;
};

void AddStrings(CCatalogue& catalogue);
void AddUtilities(CCatalogue& catalogue);
void AddConversions(CCatalogue& catalogue);
void AddMessages(CCatalogue& catalogue);
void AddRunControl(CCatalogue& catalogue);
void AddPlatform(CCatalogue& catalogue);
