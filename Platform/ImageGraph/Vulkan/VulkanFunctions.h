#pragma once

// The functions of Vulkan that the library calls, found when the first device is asked for: without a Vulkan
// loader the library still renders on the processor.

#define VK_NO_PROTOTYPES
#include <vulkan/vulkan.h>

#include <string>

#define QV_VULKAN_FUNCTIONS \
    QV_FUNCTION(vkAllocateCommandBuffers) \
    QV_FUNCTION(vkAllocateDescriptorSets) \
    QV_FUNCTION(vkAllocateMemory) \
    QV_FUNCTION(vkBeginCommandBuffer) \
    QV_FUNCTION(vkBindBufferMemory) \
    QV_FUNCTION(vkBindImageMemory) \
    QV_FUNCTION(vkCmdBeginRenderPass) \
    QV_FUNCTION(vkCmdBindDescriptorSets) \
    QV_FUNCTION(vkCmdBindPipeline) \
    QV_FUNCTION(vkCmdBindVertexBuffers) \
    QV_FUNCTION(vkCmdClearColorImage) \
    QV_FUNCTION(vkCmdCopyBufferToImage) \
    QV_FUNCTION(vkCmdCopyImageToBuffer) \
    QV_FUNCTION(vkCmdDraw) \
    QV_FUNCTION(vkCmdEndRenderPass) \
    QV_FUNCTION(vkCmdPipelineBarrier) \
    QV_FUNCTION(vkCmdPushConstants) \
    QV_FUNCTION(vkCmdResetQueryPool) \
    QV_FUNCTION(vkCmdSetScissor) \
    QV_FUNCTION(vkCmdSetViewport) \
    QV_FUNCTION(vkCmdWriteTimestamp) \
    QV_FUNCTION(vkCreateBuffer) \
    QV_FUNCTION(vkCreateCommandPool) \
    QV_FUNCTION(vkCreateDescriptorPool) \
    QV_FUNCTION(vkCreateDescriptorSetLayout) \
    QV_FUNCTION(vkCreateDevice) \
    QV_FUNCTION(vkCreateFence) \
    QV_FUNCTION(vkCreateFramebuffer) \
    QV_FUNCTION(vkCreateGraphicsPipelines) \
    QV_FUNCTION(vkCreateImage) \
    QV_FUNCTION(vkCreateImageView) \
    QV_FUNCTION(vkCreateInstance) \
    QV_FUNCTION(vkCreatePipelineLayout) \
    QV_FUNCTION(vkCreateQueryPool) \
    QV_FUNCTION(vkCreateRenderPass) \
    QV_FUNCTION(vkCreateSampler) \
    QV_FUNCTION(vkCreateShaderModule) \
    QV_FUNCTION(vkDestroyBuffer) \
    QV_FUNCTION(vkDestroyCommandPool) \
    QV_FUNCTION(vkDestroyDescriptorPool) \
    QV_FUNCTION(vkDestroyDescriptorSetLayout) \
    QV_FUNCTION(vkDestroyDevice) \
    QV_FUNCTION(vkDestroyFence) \
    QV_FUNCTION(vkDestroyFramebuffer) \
    QV_FUNCTION(vkDestroyImage) \
    QV_FUNCTION(vkDestroyImageView) \
    QV_FUNCTION(vkDestroyInstance) \
    QV_FUNCTION(vkDestroyPipeline) \
    QV_FUNCTION(vkDestroyPipelineLayout) \
    QV_FUNCTION(vkDestroyQueryPool) \
    QV_FUNCTION(vkDestroyRenderPass) \
    QV_FUNCTION(vkDestroySampler) \
    QV_FUNCTION(vkDestroyShaderModule) \
    QV_FUNCTION(vkEndCommandBuffer) \
    QV_FUNCTION(vkEnumerateInstanceLayerProperties) \
    QV_FUNCTION(vkEnumerateInstanceVersion) \
    QV_FUNCTION(vkEnumeratePhysicalDevices) \
    QV_FUNCTION(vkFreeMemory) \
    QV_FUNCTION(vkGetBufferMemoryRequirements) \
    QV_FUNCTION(vkGetDeviceQueue) \
    QV_FUNCTION(vkGetImageMemoryRequirements) \
    QV_FUNCTION(vkGetImageSubresourceLayout) \
    QV_FUNCTION(vkGetInstanceProcAddr) \
    QV_FUNCTION(vkGetPhysicalDeviceImageFormatProperties) \
    QV_FUNCTION(vkGetPhysicalDeviceMemoryProperties) \
    QV_FUNCTION(vkGetPhysicalDeviceProperties) \
    QV_FUNCTION(vkGetPhysicalDeviceProperties2) \
    QV_FUNCTION(vkGetPhysicalDeviceQueueFamilyProperties) \
    QV_FUNCTION(vkGetQueryPoolResults) \
    QV_FUNCTION(vkMapMemory) \
    QV_FUNCTION(vkQueueSubmit) \
    QV_FUNCTION(vkResetCommandPool) \
    QV_FUNCTION(vkResetDescriptorPool) \
    QV_FUNCTION(vkResetFences) \
    QV_FUNCTION(vkUpdateDescriptorSets) \
    QV_FUNCTION(vkWaitForFences)

namespace qv {

#define QV_FUNCTION(name) extern PFN_##name name;
QV_VULKAN_FUNCTIONS
#undef QV_FUNCTION

/// Loads the Vulkan loader and finds its functions, once. False with one line in `error` when there is none.
/// Thread-safe.
bool loadVulkan(std::string* error);

}  // namespace qv
