#pragma once

#include "LiveState.h"
#include "PictureRow.h"

namespace drive {

/// The live view as rows: no more of them than `nHeight`, none longer than `nWidth`. Where not everything has room,
/// what matters least goes first.
std::vector<PictureRow> layOut(const LiveState& nState, size_t nWidth, size_t nHeight);

/// What of it stays on the terminal in the end: the fix, and the errors and warnings of the log.
std::vector<PictureRow> layOutRest(const LiveState& nState, size_t nWidth);

}  // namespace drive
