#pragma once

#include <set>
#include <string>

/// Lets what the library calls fail. Functions of ours stand before its Vulkan functions, `operator new` and
/// `pthread_create` (Failures.cpp). One failure at a time is asked for; `allowAll` ends it.
namespace qv::test {

/// The Vulkan call of this index from now on fails: submitting and waiting because the device is lost, the
/// others for want of memory. With `forGood` the device is lost in all that follow, too.
void failVulkanCall(int index, bool forGood = false);
/// The allocation of this index that the library makes on this thread from now on fails.
void failAllocation(int index);
/// No thread can be made.
void failThreads();

/// While it lives, this thread works for the test itself: nothing fails and nothing is counted.
struct OwnWork {
    OwnWork();
    ~OwnWork();
};

/// Whether what was asked for has failed.
bool allowAll();

/// Names of the Vulkan functions that have failed so far, and of all that can.
std::set<std::string> failedFunctions();
std::set<std::string> failableFunctions();

}  // namespace qv::test
