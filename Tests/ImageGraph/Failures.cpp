#include "Tests/ImageGraph/Failures.h"

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>
#include <string_view>
#include <type_traits>

#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

extern "C" const char __executable_start, etext;  // of the program's code

namespace qv::test {

thread_local int depth = 0;  ///< above 0: within Vulkan, or the test's own

OwnWork::OwnWork() {
    ++depth;
}
OwnWork::~OwnWork() {
    --depth;
}

namespace {

std::mutex theMutex;  ///< guards the Vulkan half
bool countsCalls = false, lostForGood = false, callFailed = false;
int calls = 0, callToFail = -1;
std::set<std::string>& failed() {
    static std::set<std::string> names;
    return names;
}
std::set<std::string>& failable() {
    static std::set<std::string> names;
    return names;
}

thread_local bool countsAllocations = false;
thread_local bool allocationFailed = false;
thread_local int allocations = 0, allocationToFail = -1;
std::atomic<bool> threadsFail{false};

VkResult failureOf(std::string_view name) {
    std::scoped_lock lock(theMutex);
    if (!countsCalls || depth > 1) return VK_SUCCESS;
    const int index = calls++;
    if (callToFail < 0 || index < callToFail || (index > callToFail && !lostForGood)) return VK_SUCCESS;
    callFailed = true;
    failed().emplace(name);
    if (lostForGood || name == "vkQueueSubmit" || name == "vkWaitForFences") return VK_ERROR_DEVICE_LOST;
    return VK_ERROR_OUT_OF_DEVICE_MEMORY;
}

/// What a failed call may leave behind: anything.
template <typename Out>
void spoil(Out* out) {
    if constexpr (std::is_pointer_v<Out> && !std::is_const_v<Out>) {
        if (out) *out = reinterpret_cast<Out>(std::uintptr_t(0xBAD0BAD0));
    }
}
template <typename Other>
void spoil(const Other&) {}

/// Stands before the function that the library's pointer `slot` names.
template <auto slot, typename Function = std::remove_pointer_t<std::remove_pointer_t<decltype(slot)>>>
struct Stand {
    static void before(const char*) {}  // it cannot fail
};
template <auto slot, typename... Arguments>
struct Stand<slot, VkResult(Arguments...)> {
    static inline VkResult(VKAPI_PTR* function)(Arguments...) = nullptr;
    static inline const char* name = nullptr;

    static void before(const char* slotName) {
        name = slotName;
        function = *slot;
        *slot = call;
        failable().emplace(name);
    }

    static VKAPI_ATTR VkResult VKAPI_CALL call(Arguments... arguments) {
        const OwnWork inside;
        if (const VkResult failure = failureOf(name); failure != VK_SUCCESS) {
            if (std::string_view(name) != "vkEnumeratePhysicalDevices") (spoil(arguments), ...);
            return failure;
        }
        return function(arguments...);
    }
};

bool standBeforeAll() {
    loadVulkan();
#define QV_STAND(name) Stand<&name>::before(#name);
    QV_VULKAN_FUNCTIONS(QV_STAND)
#undef QV_STAND
    return true;
}

/// `caller`: drivers and layers allocate with this program's operator, too, and cannot do without.
void* allocate(std::size_t size, const void* caller) {
    const bool isOurs = caller >= &__executable_start && caller < &etext;
    if (countsAllocations && isOurs && depth == 0 && allocations++ == allocationToFail) {
        allocationFailed = true;
        return nullptr;
    }
    return std::malloc(size ? size : 1);
}

}  // namespace

void failVulkanCall(int index, bool forGood) {
    [[maybe_unused]] static const bool isStanding = standBeforeAll();
    std::scoped_lock lock(theMutex);
    calls = 0;
    callToFail = index;
    lostForGood = forGood;
    callFailed = false;
    countsCalls = true;
}

void failAllocation(int index) {
    allocations = 0;
    allocationToFail = index;
    allocationFailed = false;
    countsAllocations = true;
}

void failThreads() {
    threadsFail = true;
}

bool allowAll() {
    countsAllocations = false;
    threadsFail = false;
    std::scoped_lock lock(theMutex);
    countsCalls = false;
    const bool failed = callFailed || allocationFailed;
    callFailed = allocationFailed = false;
    return failed;
}

std::set<std::string> failedFunctions() {
    return failed();
}
std::set<std::string> failableFunctions() {
    return failable();
}

}  // namespace qv::test

// Not inlined: next to an allocation that is not, the compiler would take free() for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (void* memory = qv::test::allocate(size, __builtin_return_address(0))) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return qv::test::allocate(size, __builtin_return_address(0));
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

extern "C" {

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) {
    if (qv::test::threadsFail) return EAGAIN;
    using Function = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_create"))(thread, attributes, start,
                                                                          argument);
}

}  // extern "C"
