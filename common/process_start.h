#pragma once

namespace vxcommon {

/// To be called at the beginning of `main`, before any file is opened.
///
/// A closed standard descriptor (0 to 2) is opened at /dev/null for reading. Otherwise a file of ours could
/// get its number, and output would be written into that file. Writing to it fails, as to a closed
/// descriptor.
///
/// A write beyond the limit of the file size (RLIMIT_FSIZE) fails with EFBIG instead of ending the process.
/// In programs that the process starts, the signal ends them as usual.
void startProcess();

}  // namespace vxcommon
