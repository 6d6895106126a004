#include "FloorMessages.h"
#include "Operations.h"
#include "Samples.h"

#include <BaseUtilities/CFormatInfo.h>
#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/MakeTimeString.h>
#include <BaseUtilities/TQUuid.h>

#include <QUuid>

#include <absl/strings/str_format.h>
#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>

namespace
{
char const* const Area = "Messages";

void AddBuffer(CCatalogue& catalogue)
{
    catalogue.Add(Area, "buffer: Get again")
        .Allocates(0)
        .Library([buffer = CSimpleBuffer()]() mutable { return buffer.Get(1000) != nullptr; })
        .Floor([buffer = Floor::CBuffer()]() mutable { return buffer.Get(1000) != nullptr; });
    catalogue.Add(Area, "buffer: construct and grow")
        .Allocates(1)
        .Library([] {
            CSimpleBuffer buffer;
            return buffer.Get(1) != nullptr;
        })
        .Floor([] {
            Floor::CBuffer buffer;
            return buffer.Get(1) != nullptr;
        });

    CSimpleBuffer ours;
    Floor::CBuffer floors;
    MakeText(4096).copy(ours.Get(4096), 4096);
    MakeText(4096).copy(floors.Get(4096), 4096);
    catalogue.Add(Area, "buffer: assign 4 KiB")
        .Allocates(0)
        .Library([=, to = ours]() mutable { return (to = ours).Get(0)[7]; })
        .Floor([=, to = floors]() mutable { return (to = floors).Get(0)[7]; });
    catalogue.Add(Area, "buffer: == 4 KiB")
        .Allocates(0)
        .Library([=, other = ours] { return ours == other; })
        .Floor([=, other = floors] { return floors == other; });
}

void AddBuilding(CCatalogue& catalogue, std::string const& size, std::string const& text)
{
    catalogue.Add(Area, "DoBuild, " + size)
        .Allocates(0)
        .Library([text, buffer = CSimpleBuffer()]() mutable {
            CBasicFlatString::DoBuild(buffer, {0, '\0'}, "%s has %d files.", text.c_str(), 42);
            return std::string_view(buffer.Get(0));
        })
        .Floor([text, buffer = Floor::CBuffer()]() mutable {
            Floor::Build(buffer, {0, '\0'}, "%s has %d files.", text.c_str(), 42);
            return std::string_view(buffer.Get(0));
        })
        .Peer("fmt",
              [text, buffer = std::string()]() mutable {
                  buffer.clear();
                  fmt::format_to(std::back_inserter(buffer), "{} has {} files.", text, 42);
                  return std::string_view(buffer);
              })
        .Peer("Abseil", [text, buffer = std::string()]() mutable {
            buffer.clear();
            absl::StrAppendFormat(&buffer, "%s has %d files.", text, 42);
            return std::string_view(buffer);
        });
    catalogue.Add(Area, "CFormattedString, " + size)
        .Allocates(1)
        .Library([text] {
            CFormattedString const message("%s has %d files.", text.c_str(), 42);
            return std::string_view(message.get()).size();
        })
        .Floor([text] {
            Floor::CMessage const message("%s has %d files.", text.c_str(), 42);
            return std::string_view(message.get()).size();
        })
        .Peer("fmt", [text] { return fmt::format("{} has {} files.", text, 42).size(); });
}

template <class Throws>
auto Caught(Throws const& throws)
{
    return [=]() -> std::size_t {
        try {
            throws();
        } catch (std::runtime_error const& error) {
            return std::string_view(error.what()).size();
        }
        return 0;
    };
}

void AddThrowing(CCatalogue& catalogue, std::string const& size, std::string const& text)
{
    // Two for the temporary string (one when short), one for the text of the standard error, one
    // for the exception object.
    catalogue.Add(Area, "DoThrow and catch, " + size)
        .Allocates(4)
        .Library(Caught([=] {
            DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "There is no file %s.", text.c_str());
        }))
        .Floor(
            Caught([=] { Floor::Throw(TEST_STATUS_ERROR, "There is no file %s.", text.c_str()); }))
        .Peer("std and fmt",
              Caught([=] { throw std::runtime_error(fmt::format("There is no file {}.", text)); }));
    catalogue.Add(Area, "DoThrow of the caller's own types, " + size)
        .Allocates(4)
        .Library(Caught([=] {
            DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "%s has %d files.", text.c_str(), 42);
        }))
        .Floor(
            Caught([=] { Floor::Throw(TEST_STATUS_ERROR, "%s has %d files.", text.c_str(), 42); }))
        .Peer("std and fmt",
              Caught([=] { throw std::runtime_error(fmt::format("{} has {} files.", text, 42)); }));
}

void AddExceptions(CCatalogue& catalogue)
{
    std::string const text = "There is no file of that name.";
    catalogue.Add(Area, "DoThrow of a literal")
        .Allocates(4)
        .Library(Caught([] {
            DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "There is no file %s.", "readme.txt");
        }))
        .Floor(Caught([] {
            Floor::Throw<char const*>(TEST_STATUS_ERROR, "There is no file %s.", "readme.txt");
        }));
    catalogue.Add(Area, "exception: construct")
        .Allocates(3)
        .Library([=] { return std::string_view(TQRunTimeException(text).what()).size(); })
        .Floor([=] { return std::string_view(Floor::CRunTimeException(text).what()).size(); })
        .Peer("std", [=] { return std::string_view(std::runtime_error(text).what()).size(); });
}

template <class Uuid>
Uuid MakeUuid()
{
    return {0x12345678, 0x9ABC, 0xDEF0, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};
}

void AddTexts(CCatalogue& catalogue)
{
    QUuid const peer(0x12345678, 0x9ABC, 0xDEF0, 0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF);
    catalogue.Add(Area, "TQUuid::ToString")
        .Allocates(3)
        .Library([uuid = MakeUuid<TQUuid>()] { return uuid.ToString(); })
        .Floor([uuid = MakeUuid<Floor::CUuid>()] { return uuid.ToString(); })
        .Peer("Qt", [=] { return peer.toByteArray().toUpper(); });

    auto const when = std::chrono::system_clock::from_time_t(1700000000);
    char const* const format = "%Y-%m-%d %H:%M:%S";
    catalogue.Add(Area, "MakeTimeString")
        .Library([=] { return MakeTimeString(format, when); })
        .Floor([=] { return Floor::MakeTimeString(format, when); })
        .Peer("fmt", [=] {
            return fmt::format("{:%Y-%m-%d %H:%M:%S}",
                               fmt::localtime(std::chrono::system_clock::to_time_t(when)));
        });
}

template <class Format>
auto Merging(bool different)
{
    Format other;
    if (different) {
        other.m_Color = {10, 20, 30, 255};
        other.m_BackColor = {40, 50, 60, 255};
        other.m_Weight = 700;
        other.m_TextStyle = 3;
        other.m_TextEffect = 1;
    }
    return [=] {
        Format record;
        record.MergeFormat(other);
        return record.m_Color.m_Red + record.m_BackColor.m_Blue + record.m_Weight
               + record.m_TextStyle + record.m_ColorChanged + record.m_HasBackColor;
    };
}

void AddFormats(CCatalogue& catalogue)
{
    catalogue.Add(Area, "format merge, all different")
        .Allocates(0)
        .Library(Merging<CFormatInfo>(true))
        .Floor(Merging<Floor::CFormat>(true));
    catalogue.Add(Area, "format merge, all equal")
        .Allocates(0)
        .Library(Merging<CFormatInfo>(false))
        .Floor(Merging<Floor::CFormat>(false));
}
} // namespace

void AddMessages(CCatalogue& catalogue)
{
    AddBuffer(catalogue);
    AddBuilding(catalogue, "short", "/home/operator");
    AddBuilding(catalogue, "4 KiB", MakeText(4096));
    AddThrowing(catalogue, "short", "/home/operator/readme.txt");
    AddThrowing(catalogue, "4 KiB", MakeText(4096));
    AddExceptions(catalogue);
    AddTexts(catalogue);
    AddFormats(catalogue);
}
