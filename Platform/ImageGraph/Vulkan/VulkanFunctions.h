#pragma once

#define VK_NO_PROTOTYPES
#include <vulkan/vulkan.h>

/// Vulkan's functions as the loader has them. It is opened when a device is first asked for, so that the
/// library starts on a machine that has none.
namespace qv {

#define QV_VULKAN_FUNCTIONS(X)                                                                               \
    X(vkAllocateCommandBuffers)                                                                              \
    X(vkAllocateDescriptorSets)                                                                              \
    X(vkAllocateMemory) X(vkBeginCommandBuffer) X(vkBindBufferMemory) X(vkBindImageMemory)                   \
        X(vkCmdBeginRenderPass) X(vkCmdBindDescriptorSets) X(vkCmdBindPipeline) X(vkCmdBindVertexBuffers) X( \
            vkCmdClearColorImage) X(vkCmdCopyBufferToImage) X(vkCmdCopyImageToBuffer) X(vkCmdDraw)           \
            X(vkCmdEndRenderPass) X(vkCmdPipelineBarrier) X(vkCmdPushConstants) X(vkCmdResetQueryPool) X(    \
                vkCmdSetScissor) X(vkCmdSetViewport) X(vkCmdWriteTimestamp) X(vkCreateBuffer)                \
                X(vkCreateCommandPool) X(vkCreateDescriptorPool) X(vkCreateDescriptorSetLayout) X(           \
                    vkCreateDevice) X(vkCreateFence) X(vkCreateFramebuffer) X(vkCreateGraphicsPipelines)     \
                    X(vkCreateImage) X(vkCreateImageView) X(vkCreateInstance) X(vkCreatePipelineLayout) X(   \
                        vkCreateQueryPool) X(vkCreateRenderPass) X(vkCreateSampler) X(vkCreateShaderModule)  \
                        X(vkDestroyBuffer) X(vkDestroyCommandPool) X(vkDestroyDescriptorPool)                \
                            X(vkDestroyDescriptorSetLayout) X(vkDestroyDevice) X(vkDestroyFence) X(          \
                                vkDestroyFramebuffer) X(vkDestroyImage) X(vkDestroyImageView)                \
                                X(vkDestroyInstance) X(vkDestroyPipeline) X(vkDestroyPipelineLayout) X(      \
                                    vkDestroyQueryPool) X(vkDestroyRenderPass) X(vkDestroySampler)           \
                                    X(vkDestroyShaderModule) X(vkEndCommandBuffer) X(                        \
                                        vkEnumerateInstanceLayerProperties) X(vkEnumerateInstanceVersion)    \
                                        X(vkEnumeratePhysicalDevices) X(vkFreeMemory)                        \
                                            X(vkGetBufferMemoryRequirements) X(vkGetDeviceQueue) X(          \
                                                vkGetImageMemoryRequirements) X(vkGetImageSubresourceLayout) \
                                                X(vkGetInstanceProcAddr)                                     \
                                                    X(vkGetPhysicalDeviceImageFormatProperties)              \
                                                        X(vkGetPhysicalDeviceMemoryProperties) X(            \
                                                            vkGetPhysicalDeviceProperties)                   \
                                                            X(vkGetPhysicalDeviceProperties2) X(             \
                                                                vkGetPhysicalDeviceQueueFamilyProperties)    \
                                                                X(vkGetQueryPoolResults) X(vkMapMemory)      \
                                                                    X(vkQueueSubmit) X(vkResetCommandPool)   \
                                                                        X(vkResetDescriptorPool)             \
                                                                            X(vkResetFences)                 \
                                                                                X(vkUpdateDescriptorSets)    \
                                                                                    X(vkWaitForFences)

#define QV_DECLARE(name) extern PFN_##name name;
QV_VULKAN_FUNCTIONS(QV_DECLARE)
#undef QV_DECLARE

/// Opens the loader for the process, once. Throws VulkanError when there is none. Thread-safe; to be called
/// before any of the functions.
void loadVulkan();

}  // namespace qv
