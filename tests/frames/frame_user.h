// SPDX-License-Identifier: MIT
// The person before the dialog of frame_hashes, as each machine has one.
#pragma once

#include <atomic>

#include "glyphmotion/host_contract.h"

/// Runs the main dialog once. The person chooses each of the `effects` in turn, presses Test, waits until the host has
/// ended one more task, as `endedTasks` counts them, and cancels at last.
void TestEveryEffect(const HostCallTable& table, int effects, const std::atomic<int>& endedTasks);
