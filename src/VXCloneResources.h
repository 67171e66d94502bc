#pragma once

#include <boost/filesystem.hpp>
#include <boost/version.hpp>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/bundle.h"

/// A string from the television that we must free, or null.
struct VXCloneFree {
    void operator()(char* text) const { std::free(text); }
};
using VXCloneString = std::unique_ptr<char, VXCloneFree>;

/// A message of strings.
struct VXCloneFreeBundle {
    void operator()(bundle* message) const { bundle_free(message); }
};
using VXCloneBundle = std::unique_ptr<bundle, VXCloneFreeBundle>;

/// An open C stream.
struct VXCloneClose {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using VXCloneFile = std::unique_ptr<std::FILE, VXCloneClose>;

/// Overwrites existing files. The option was renamed in Boost 1.74.
#if BOOST_VERSION >= 107400
inline constexpr auto kOverwriteExisting = boost::filesystem::copy_options::overwrite_existing;
#else
inline constexpr auto kOverwriteExisting = boost::filesystem::copy_option::overwrite_if_exists;
#endif
