#pragma once

#include <filesystem>
#include <string>

// Why a path is not what is asked for, for the operator to read; empty where it is.

std::string WhyNoFolder(std::filesystem::path const& path);
std::string WhyNoFileToRead(std::filesystem::path const& path);
/// A file that exists may be written.
std::string WhyNoFileToWrite(std::filesystem::path const& path);
