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

template <typename... Arguments>
VkResult forward(const char* name, Arguments... arguments) {
    const OwnWork inside;
    if (const VkResult failure = failureOf(name); failure != VK_SUCCESS) {
        if (std::string_view(name) != "vkEnumeratePhysicalDevices") (spoil(arguments), ...);
        return failure;
    }
    return reinterpret_cast<VkResult(VKAPI_PTR*)(Arguments...)>(dlsym(RTLD_NEXT, name))(arguments...);
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

// A function of the library's own, by the types of its arguments.
#define QV_ARGUMENTS_1(A) A a
#define QV_ARGUMENTS_2(A, B) A a, B b
#define QV_ARGUMENTS_3(A, B, C) A a, B b, C c
#define QV_ARGUMENTS_4(A, B, C, D) A a, B b, C c, D d
#define QV_ARGUMENTS_5(A, B, C, D, E) A a, B b, C c, D d, E e
#define QV_ARGUMENTS_6(A, B, C, D, E, F) A a, B b, C c, D d, E e, F f
#define QV_ARGUMENTS_7(A, B, C, D, E, F, G) A a, B b, C c, D d, E e, F f, G g
#define QV_ARGUMENTS_8(A, B, C, D, E, F, G, H) A a, B b, C c, D d, E e, F f, G g, H h
#define QV_NAMES_1 a
#define QV_NAMES_2 a, b
#define QV_NAMES_3 a, b, c
#define QV_NAMES_4 a, b, c, d
#define QV_NAMES_5 a, b, c, d, e
#define QV_NAMES_6 a, b, c, d, e, f
#define QV_NAMES_7 a, b, c, d, e, f, g
#define QV_NAMES_8 a, b, c, d, e, f, g, h
#define QV_FAILABLE(name, count, ...)                                        \
    VKAPI_ATTR VkResult VKAPI_CALL name(QV_ARGUMENTS_##count(__VA_ARGS__)) { \
        return qv::test::forward(#name, QV_NAMES_##count);                   \
    }                                                                        \
    [[maybe_unused]] static const bool name##IsFailable = qv::test::failable().emplace(#name).second;
#define QV_CREATE(name, Thing) \
    QV_FAILABLE(name, 4, VkDevice, const Vk##Thing##CreateInfo*, const VkAllocationCallbacks*, Vk##Thing*)

QV_FAILABLE(vkEnumerateInstanceVersion, 1, uint32_t*)
QV_FAILABLE(vkCreateInstance, 3, const VkInstanceCreateInfo*, const VkAllocationCallbacks*, VkInstance*)
QV_FAILABLE(vkEnumeratePhysicalDevices, 3, VkInstance, uint32_t*, VkPhysicalDevice*)
QV_FAILABLE(vkGetPhysicalDeviceImageFormatProperties, 7, VkPhysicalDevice, VkFormat, VkImageType,
            VkImageTiling, VkImageUsageFlags, VkImageCreateFlags, VkImageFormatProperties*)
QV_FAILABLE(vkCreateDevice, 4, VkPhysicalDevice, const VkDeviceCreateInfo*, const VkAllocationCallbacks*,
            VkDevice*)
QV_CREATE(vkCreateBuffer, Buffer)
QV_CREATE(vkCreateCommandPool, CommandPool)
QV_CREATE(vkCreateDescriptorPool, DescriptorPool)
QV_CREATE(vkCreateDescriptorSetLayout, DescriptorSetLayout)
QV_CREATE(vkCreateFence, Fence)
QV_CREATE(vkCreateFramebuffer, Framebuffer)
QV_CREATE(vkCreateImage, Image)
QV_CREATE(vkCreateImageView, ImageView)
QV_CREATE(vkCreatePipelineLayout, PipelineLayout)
QV_CREATE(vkCreateQueryPool, QueryPool)
QV_CREATE(vkCreateRenderPass, RenderPass)
QV_CREATE(vkCreateSampler, Sampler)
QV_CREATE(vkCreateShaderModule, ShaderModule)
QV_FAILABLE(vkCreateGraphicsPipelines, 6, VkDevice, VkPipelineCache, uint32_t,
            const VkGraphicsPipelineCreateInfo*, const VkAllocationCallbacks*, VkPipeline*)
QV_FAILABLE(vkAllocateMemory, 4, VkDevice, const VkMemoryAllocateInfo*, const VkAllocationCallbacks*,
            VkDeviceMemory*)
QV_FAILABLE(vkAllocateCommandBuffers, 3, VkDevice, const VkCommandBufferAllocateInfo*, VkCommandBuffer*)
QV_FAILABLE(vkAllocateDescriptorSets, 3, VkDevice, const VkDescriptorSetAllocateInfo*, VkDescriptorSet*)
QV_FAILABLE(vkBindBufferMemory, 4, VkDevice, VkBuffer, VkDeviceMemory, VkDeviceSize)
QV_FAILABLE(vkBindImageMemory, 4, VkDevice, VkImage, VkDeviceMemory, VkDeviceSize)
QV_FAILABLE(vkMapMemory, 6, VkDevice, VkDeviceMemory, VkDeviceSize, VkDeviceSize, VkMemoryMapFlags, void**)
QV_FAILABLE(vkBeginCommandBuffer, 2, VkCommandBuffer, const VkCommandBufferBeginInfo*)
QV_FAILABLE(vkEndCommandBuffer, 1, VkCommandBuffer)
QV_FAILABLE(vkResetCommandPool, 3, VkDevice, VkCommandPool, VkCommandPoolResetFlags)
QV_FAILABLE(vkQueueSubmit, 4, VkQueue, uint32_t, const VkSubmitInfo*, VkFence)
QV_FAILABLE(vkResetFences, 3, VkDevice, uint32_t, const VkFence*)
QV_FAILABLE(vkWaitForFences, 5, VkDevice, uint32_t, const VkFence*, VkBool32, uint64_t)
QV_FAILABLE(vkGetQueryPoolResults, 8, VkDevice, VkQueryPool, uint32_t, uint32_t, size_t, void*, VkDeviceSize,
            VkQueryResultFlags)

}  // extern "C"
