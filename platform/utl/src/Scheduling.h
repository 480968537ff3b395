#pragma once

namespace utl {

/// Makes the calling thread a thread of this layer for the kernel: its name, exact wake-ups and, where the host wants
/// it, its priority.
void introduceToKernel(const char* npKernelName, int nPriority);

}  // namespace utl
