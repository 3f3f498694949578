#include "Platform/ImageGraph/Vulkan/VulkanDevice.h"

#include <sys/mman.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace qv {

const char* vulkanResultName(VkResult result) {
    switch (result) {
        case VK_ERROR_OUT_OF_HOST_MEMORY:
            return "out of memory";
        case VK_ERROR_OUT_OF_DEVICE_MEMORY:
            return "out of device memory";
        case VK_ERROR_DEVICE_LOST:
            return "the device was lost";
        case VK_ERROR_INCOMPATIBLE_DRIVER:
            return "no Vulkan driver is installed";
        case VK_ERROR_INITIALIZATION_FAILED:
            return "initialisation failed";
        case VK_ERROR_LAYER_NOT_PRESENT:
            return "a layer is missing";
        case VK_ERROR_EXTENSION_NOT_PRESENT:
            return "an extension is missing";
        case VK_ERROR_FORMAT_NOT_SUPPORTED:
            return "a format is not supported";
        case VK_ERROR_TOO_MANY_OBJECTS:
            return "too many objects";
        default:
            return "the driver failed";
    }
}

void check(VkResult result, const char* what) {
    if (result < 0) throw VulkanError(fmt::format("{}: {}", what, vulkanResultName(result)));
}

namespace {

/// Address space that software Vulkan takes while it is opened, for its compiler and its threads. It does not
/// survive it when there is less. Measured with two threads.
constexpr std::size_t kSoftwareDeviceBytes = 384 << 20;

bool hasRoomFor(std::size_t bytes) {
    void* place = ::mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (place == MAP_FAILED) return false;
    ::munmap(place, bytes);
    return true;
}

constexpr const char* kValidationLayer = "VK_LAYER_KHRONOS_validation";

std::string versionText(std::uint32_t version) {
    return fmt::format("{}.{}.{}", VK_API_VERSION_MAJOR(version), VK_API_VERSION_MINOR(version),
                       VK_API_VERSION_PATCH(version));
}

VkInstance makeInstance(const VkInstanceCreateInfo& info) {
    std::uint32_t loaderVersion = 0;
    check(vkEnumerateInstanceVersion(&loaderVersion), "cannot use Vulkan");
    if (loaderVersion < VK_API_VERSION_1_1) throw VulkanError("the Vulkan loader is older than 1.1");
    VkInstance instance = VK_NULL_HANDLE;
    check(vkCreateInstance(&info, nullptr, &instance), "cannot use Vulkan");
    return instance;
}

std::vector<VkPhysicalDevice> physicalDevices(VkInstance instance) {
    std::uint32_t count = 0;
    check(vkEnumeratePhysicalDevices(instance, &count, nullptr), "cannot list Vulkan devices");
    std::vector<VkPhysicalDevice> devices(count);
    check(vkEnumeratePhysicalDevices(instance, &count, devices.data()), "cannot list Vulkan devices");
    devices.resize(count);
    return devices;
}

std::vector<VkQueueFamilyProperties> queueFamilies(VkPhysicalDevice device) {
    std::uint32_t count = 0;
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, nullptr);
    std::vector<VkQueueFamilyProperties> families(count);
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, families.data());
    return families;
}

/// Index of a queue family that draws, or UINT32_MAX.
std::uint32_t graphicsFamily(VkPhysicalDevice device) {
    const std::vector<VkQueueFamilyProperties> families = queueFamilies(device);
    for (std::uint32_t i = 0; i < families.size(); ++i) {
        if (families[i].queueFlags & VK_QUEUE_GRAPHICS_BIT) return i;
    }
    return UINT32_MAX;
}

GraphicsDevice describe(VkPhysicalDevice device, int index) {
    VkPhysicalDeviceDriverProperties driver{VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_DRIVER_PROPERTIES};
    VkPhysicalDeviceProperties2 properties{VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2};
    std::uint32_t version = 0;
    {
        VkPhysicalDeviceProperties basic;
        vkGetPhysicalDeviceProperties(device, &basic);
        version = basic.apiVersion;
    }
    if (version >= VK_API_VERSION_1_2) properties.pNext = &driver;
    if (version >= VK_API_VERSION_1_1)
        vkGetPhysicalDeviceProperties2(device, &properties);
    else
        vkGetPhysicalDeviceProperties(device, &properties.properties);
    const VkPhysicalDeviceProperties& p = properties.properties;

    VkPhysicalDeviceMemoryProperties memory;
    vkGetPhysicalDeviceMemoryProperties(device, &memory);
    std::uint64_t bytes = 0;
    for (std::uint32_t i = 0; i < memory.memoryHeapCount; ++i) {
        if (memory.memoryHeaps[i].flags & VK_MEMORY_HEAP_DEVICE_LOCAL_BIT)
            bytes = std::max(bytes, memory.memoryHeaps[i].size);
    }
    GraphicsDevice info{
        index, p.deviceName, {}, versionText(version), p.deviceType == VK_PHYSICAL_DEVICE_TYPE_CPU, bytes,
        {}};
    info.driver = driver.driverName[0] ? fmt::format("{} {}", driver.driverName, driver.driverInfo)
                                       : versionText(p.driverVersion);
    if (version < VK_API_VERSION_1_1)
        info.unusable = "it has Vulkan " + info.apiVersion + ", 1.1 is needed";
    else if (graphicsFamily(device) == UINT32_MAX)
        info.unusable = "it has no graphics queue";
    return info;
}

/// How capable a kind of device is.
int rank(VkPhysicalDevice device) {
    VkPhysicalDeviceProperties p;
    vkGetPhysicalDeviceProperties(device, &p);
    switch (p.deviceType) {
        case VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU:
            return 4;
        case VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU:
            return 3;
        case VK_PHYSICAL_DEVICE_TYPE_VIRTUAL_GPU:
            return 2;
        case VK_PHYSICAL_DEVICE_TYPE_CPU:
            return 1;
        default:
            return 0;
    }
}

VkApplicationInfo applicationInfo() {
    VkApplicationInfo info{VK_STRUCTURE_TYPE_APPLICATION_INFO};
    info.pApplicationName = "QVFilterExtension";
    info.apiVersion = VK_API_VERSION_1_1;
    return info;
}

bool hasLayer(const char* name) {
    std::uint32_t count = 0;
    check(vkEnumerateInstanceLayerProperties(&count, nullptr), "cannot list Vulkan layers");
    std::vector<VkLayerProperties> layers(count);
    check(vkEnumerateInstanceLayerProperties(&count, layers.data()), "cannot list Vulkan layers");
    return std::any_of(layers.begin(), layers.end(),
                       [&](auto& layer) { return !std::strcmp(layer.layerName, name); });
}

}  // namespace

std::vector<GraphicsDevice> VulkanDevice::enumerate() {
    loadVulkan();
    const VkApplicationInfo application = applicationInfo();
    VkInstanceCreateInfo info{VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO};
    info.pApplicationInfo = &application;
    const VkInstance instance = makeInstance(info);
    std::vector<GraphicsDevice> devices;
    try {
        for (VkPhysicalDevice device : physicalDevices(instance))
            devices.push_back(describe(device, int(devices.size())));
    } catch (...) {
        vkDestroyInstance(instance, nullptr);
        throw;
    }
    vkDestroyInstance(instance, nullptr);
    return devices;
}

VulkanDevice::VulkanDevice(const MTIContextOptions& options) {
    loadVulkan();
    try {
        createInstance(options.validation);
        createDevice(options.deviceIndex);
    } catch (...) {
        close();
        throw;
    }
}

VulkanDevice::VulkanDevice(const MTIVulkanDevice& host)
    : instance_(host.instance),
      physicalDevice_(host.physicalDevice),
      device_(host.device),
      queue_(host.queue),
      queueFamily_(host.queueFamily),
      isHosts_(true) {
    loadVulkan();
    if (!instance_ || !physicalDevice_ || !device_ || !queue_)
        throw VulkanError("the host's device is not complete");
    if (host.queueMutex) queueMutex_ = host.queueMutex;
    const std::vector<VkQueueFamilyProperties> families = queueFamilies(physicalDevice_);
    if (queueFamily_ >= families.size() || !(families[queueFamily_].queueFlags & VK_QUEUE_GRAPHICS_BIT))
        throw VulkanError("the host's queue does not draw");
    describeDevice(-1);
}

VulkanDevice::~VulkanDevice() {
    close();
}

void VulkanDevice::close() {
    if (isHosts_) return;
    if (device_) vkDestroyDevice(device_, nullptr);
    if (messenger_) {
        const auto destroyMessenger = PFN_vkDestroyDebugUtilsMessengerEXT(
            vkGetInstanceProcAddr(instance_, "vkDestroyDebugUtilsMessengerEXT"));
        destroyMessenger(instance_, messenger_, nullptr);
    }
    if (instance_) vkDestroyInstance(instance_, nullptr);
    device_ = VK_NULL_HANDLE;
    messenger_ = VK_NULL_HANDLE;
    instance_ = VK_NULL_HANDLE;
}

void VulkanDevice::createInstance(bool validation) {
    const VkApplicationInfo application = applicationInfo();
    VkInstanceCreateInfo info{VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO};
    info.pApplicationInfo = &application;

    const VkValidationFeatureEnableEXT synchronization =
        VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT;
    VkValidationFeaturesEXT features{VK_STRUCTURE_TYPE_VALIDATION_FEATURES_EXT};
    features.enabledValidationFeatureCount = 1;
    features.pEnabledValidationFeatures = &synchronization;
    VkDebugUtilsMessengerCreateInfoEXT messages{VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT};
    messages.messageSeverity =
        VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT | VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT;
    messages.messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT;
    messages.pfnUserCallback = onMessage;
    messages.pUserData = messages_.get();
    features.pNext = &messages;
    const char* const layers[] = {kValidationLayer};
    const char* const extensions[] = {VK_EXT_DEBUG_UTILS_EXTENSION_NAME};
    if (validation) {
        if (!hasLayer(kValidationLayer)) throw VulkanError("the Vulkan validation layer is not installed");
        info.pNext = &features;
        info.enabledLayerCount = 1;
        info.ppEnabledLayerNames = layers;
        info.enabledExtensionCount = 1;
        info.ppEnabledExtensionNames = extensions;
    }
    instance_ = makeInstance(info);
    if (validation) {
        const auto create = PFN_vkCreateDebugUtilsMessengerEXT(
            vkGetInstanceProcAddr(instance_, "vkCreateDebugUtilsMessengerEXT"));
        VkDebugUtilsMessengerEXT messenger = VK_NULL_HANDLE;
        check(create(instance_, &messages, nullptr, &messenger), "cannot watch the validation layer");
        messenger_ = messenger;
    }
}

void VulkanDevice::createDevice(int index) {
    const std::vector<VkPhysicalDevice> devices = physicalDevices(instance_);
    if (devices.empty()) throw VulkanError("no Vulkan device was found");
    if (index >= int(devices.size())) {
        throw VulkanError(fmt::format("there is no Vulkan device {}; {}", index,
                                      devices.size() == 1 ? "there is 1, number 0"
                                                          : fmt::format("there are {}, numbers 0 to {}",
                                                                        devices.size(), devices.size() - 1)));
    }
    if (index < 0) {
        int best = -1;
        for (std::size_t i = 0; i < devices.size(); ++i) {
            if (!describe(devices[i], int(i)).unusable.empty()) continue;
            if (best < 0 || rank(devices[i]) > rank(devices[std::size_t(best)])) best = int(i);
        }
        index = std::max(best, 0);
    }
    physicalDevice_ = devices[std::size_t(index)];
    queueFamily_ = graphicsFamily(physicalDevice_);
    describeDevice(index);

    if (info_.isProcessor && !hasRoomFor(kSoftwareDeviceBytes))
        throw VulkanError("there is not enough memory for the Vulkan device");

    const float priority = 1;
    VkDeviceQueueCreateInfo queueInfo{VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO};
    queueInfo.queueFamilyIndex = queueFamily_;
    queueInfo.queueCount = 1;
    queueInfo.pQueuePriorities = &priority;
    VkDeviceCreateInfo deviceInfo{VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO};
    deviceInfo.queueCreateInfoCount = 1;
    deviceInfo.pQueueCreateInfos = &queueInfo;
    VkDevice device = VK_NULL_HANDLE;
    check(vkCreateDevice(physicalDevice_, &deviceInfo, nullptr, &device), "cannot open the Vulkan device");
    device_ = device;
    vkGetDeviceQueue(device_, queueFamily_, 0, &queue_);
}

void VulkanDevice::describeDevice(int index) {
    info_ = describe(physicalDevice_, index);
    if (!info_.unusable.empty()) throw VulkanError(info_.name + " cannot be used: " + info_.unusable);
    VkPhysicalDeviceProperties properties;
    vkGetPhysicalDeviceProperties(physicalDevice_, &properties);
    limits_ = properties.limits;
    vkGetPhysicalDeviceMemoryProperties(physicalDevice_, &memory_);
    const bool timestamps = queueFamilies(physicalDevice_)[queueFamily_].timestampValidBits > 0;
    timestampPeriod_ = timestamps ? limits_.timestampPeriod : 0;
}

std::uint32_t VulkanDevice::findMemoryType(std::uint32_t typeBits, VkMemoryPropertyFlags wanted) const {
    for (std::uint32_t i = 0; i < memory_.memoryTypeCount; ++i) {
        if ((typeBits >> i & 1u) && (memory_.memoryTypes[i].propertyFlags & wanted) == wanted) return i;
    }
    return UINT32_MAX;
}

std::vector<std::string> VulkanDevice::validationMessages() const {
    std::scoped_lock lock(messages_->mutex);
    return messages_->lines;
}

VkBool32 VulkanDevice::onMessage(VkDebugUtilsMessageSeverityFlagBitsEXT, VkDebugUtilsMessageTypeFlagsEXT,
                                 const VkDebugUtilsMessengerCallbackDataEXT* data, void* user) {
    auto& messages = *static_cast<Messages*>(user);
    std::scoped_lock lock(messages.mutex);
    try {
        messages.lines.emplace_back(data->pMessage);
    } catch (const std::bad_alloc&) {
        // The layer calls from C: nothing may pass through it.
    }
    return VK_FALSE;
}

}  // namespace qv
