// SPDX-License-Identifier: MIT
#include "platform/web/fast_vectors.h"

template class std::vector<std::uint8_t>;
