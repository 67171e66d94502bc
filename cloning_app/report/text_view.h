#pragma once

#include "cloning_app/report/progress_view.h"

namespace vxclone {

/// A view for people: one line for each step, or one live line.
std::unique_ptr<ProgressView> makePlainView(std::string run, vxcommon::Writer out, vxcommon::Writer err,
                                            ViewOptions options);
std::unique_ptr<ProgressView> makeTerminalView(std::string run, vxcommon::Writer out, vxcommon::Writer err,
                                               ViewOptions options);

/// Minutes and seconds: "0:07".
std::string clockText(std::chrono::milliseconds elapsed);

/// A part of the live line.
struct Piece {
    std::string text;
    vxcommon::Colour colour = vxcommon::Colour::Plain;
    int expendable = 0;  ///< left out if the line is too long, the highest first; 0 stays
};

/// The pieces on a line that is shorter than `width` columns, so that no terminal wraps it. If it is too
/// long, first the expendable pieces are left out, then its end is cut.
vxcommon::Printable fitPieces(std::vector<Piece> pieces, std::size_t width, bool coloured);

}  // namespace vxclone
