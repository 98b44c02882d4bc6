#pragma once

namespace simulator {

/// Fills an empty scene store with three centres, some rooms and scenes that show different corners of the
/// simulated lecture room. A store that holds anything is left as it is. Uses the installed user folders.
void writeSampleStore();

}  // namespace simulator
