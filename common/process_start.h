#pragma once

namespace vxcommon {

/// For the beginning of `main`, before anything is opened.
///
/// A standard descriptor (0 to 2) that is closed is opened at /dev/null, for reading: no file of ours gets
/// its number and then what is meant for people or for programs. Writing to it fails, as to a closed one.
///
/// A write beyond the limit of the file size (RLIMIT_FSIZE) fails with EFBIG instead of ending the process.
/// Programs that the process starts are ended by the signal as usual.
void startProcess();

}  // namespace vxcommon
