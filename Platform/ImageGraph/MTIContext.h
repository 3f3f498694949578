#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/MTIVulkan.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/PixelBuffer.h"

namespace qv {

/// What renders.
enum class MTIDeviceKind {
    any,     ///< a GPU where there is one, else the processor natively, else a software Vulkan device
    vulkan,  ///< a Vulkan device
    native   ///< the processor, with instructions compiled for it, without Vulkan
};

/// A device as a host chooses one.
struct GraphicsDevice {
    int index;                  ///< of `MTIContextOptions::deviceIndex`
    std::string name, driver;   ///< as Vulkan names them; of the processor its instructions and the compiler
    std::string apiVersion;     ///< Vulkan's, "1.3.230"; empty of the processor
    bool isProcessor;           ///< the processor, or a software device
    std::uint64_t memoryBytes;  ///< of the device's own memory
    std::string unusable;       ///< why a context cannot be made on it, or empty
    MTIDeviceKind kind = MTIDeviceKind::vulkan;  ///< vulkan or native
};

/// A folder of the library's in $XDG_CACHE_HOME, or in ~/.cache; empty when neither is known.
std::string defaultShaderCacheDirectory();

/// When passes whose programs can be joined are drawn as one. What is joined hands on floats, which are
/// not rounded to the working format in between.
enum class MTIFusion {
    off,              ///< each pass is drawn by itself; for comparing
    inBackground,     ///< programs are made beside the renders, from the second frame of a graph on, and its
                      ///< passes are drawn one by one until then: no frame waits. For previews
    beforeFirstFrame  ///< a graph's first frame waits for its programs, so that every run gives the same
                      ///< codes. For exports
};

/// How a context is made. What stands here is what most hosts want.
struct MTIContextOptions {
    int deviceIndex = -1;  ///< of `MTIContext::devices`; −1 takes the most capable
    /// Which devices come into question where none is chosen by its index. `any` leaves it to the environment
    /// variable QVFILTER_DEVICE ("vulkan" or "native"), where that is set.
    MTIDeviceKind deviceKind = MTIDeviceKind::any;
    /// Of the passes in between: rgba16Float for sources of more than 8 bits.
    MTIPixelFormat workingPixelFormat = MTIPixelFormat::rgba8Unorm;
    /// Take the ways that are fast on a GPU on a software Vulkan device too: planes converted in shaders,
    /// copies through staging memory, paired taps. For testing them.
    bool gpuPaths = false;
    bool validation = false;  ///< load the Khronos validation layer; `any` device is then one of Vulkan's
    std::uint64_t textureBudgetBytes = 512u << 20;  ///< idle textures above this are freed
    int threads = 0;  ///< of the processor that renders natively, at most; 0: as many as it has
    MTIFusion fusion = MTIFusion::inBackground;  ///< when several passes are drawn as one
    /// Where programs that are joined and compiled at run time are kept, for the next process too; any number
    /// of contexts and processes may share it. Empty: nowhere.
    std::string shaderCacheDirectory = defaultShaderCacheDirectory();
};

/// What a render cost. Bytes are those of textures that passes read and wrote.
struct RenderStatistics {
    int passes = 0;                                 ///< draws over a whole texture
    std::uint64_t bytesRead = 0, bytesWritten = 0;  ///< of all passes together
    std::uint64_t peakTextureBytes = 0;  ///< of sources, results and what lies between, most at any time
    /// Made while it was recorded; 0 once a graph of this shape and size has been seen.
    int madeTextures = 0, madePipelines = 0;
    double gpuMilliseconds = 0;  ///< from the first pass to the last; 0 where the device has no time stamps
};

/// A render under way. Destroying it does not cancel it.
class RenderTask {
  public:
    virtual ~RenderTask() = default;
    /// Blocks until the pixels are there. False with the cause in `error`. May be called from any one thread.
    virtual bool wait(std::string* error = nullptr) = 0;
    virtual const RenderStatistics& statistics() const = 0;  ///< valid after `wait`
};

/// Renders images on one device. Thread-safe: calls from several threads are taken one after another.
class MTIContext {
  public:
    /// Every Vulkan device of the machine and, last, the processor where it can render natively; empty with
    /// the cause in `error` when there is none.
    static std::vector<GraphicsDevice> devices(std::string* error = nullptr);

    /// Nil with one line naming the cause when no usable device is found or it cannot be set up.
    static std::shared_ptr<MTIContext> create(const MTIContextOptions& options = {},
                                              std::string* error = nullptr);
    /// The same on a host's own device; `deviceIndex` and `validation` do not count.
    static std::shared_ptr<MTIContext> create(const MTIVulkanDevice& device, const MTIContextOptions& options,
                                              std::string* error = nullptr);
    virtual ~MTIContext() = default;

    /// The device that it renders on, and how it was made.
    virtual const GraphicsDevice& device() const = 0;
    virtual const MTIContextOptions& options() const = 0;

    /// Starts rendering into `destination`, whose size must be the image's: 8-bit formats and, from a float
    /// working format, 10-bit ones. Blocks only while too many frames are in flight. Nil with the cause in
    /// `error` on failure.
    virtual std::unique_ptr<RenderTask> startRender(const MTIImage& image, const PixelBuffer& destination,
                                                    std::string* error = nullptr) = 0;
    /// Renders and leaves the result on the device; for measuring and for warming up.
    virtual std::unique_ptr<RenderTask> startRender(const MTIImage& image, std::string* error = nullptr) = 0;

    /// Starts rendering straight into a host's image of the same device, whose size must be the image's; see
    /// MTIVulkanImage and MTIVulkanSync for layouts and order. Nil with the cause in `error` on failure; no
    /// semaphore is waited for or signalled then.
    virtual std::unique_ptr<RenderTask> startRender(const MTIImage& image, const MTIVulkanImage& destination,
                                                    const MTIVulkanSync& sync = {},
                                                    std::string* error = nullptr) = 0;

    /// Renders to premultiplied RGBA8 and waits. Nil with the cause in `error` on failure.
    virtual Bitmap renderToBitmap(const MTIImage& image, std::string* error = nullptr) = 0;
    /// Renders through a float texture and waits: four premultiplied floats a pixel, top row first. Empty
    /// with the cause in `error` on failure. Intermediate passes keep the formats they ask for.
    virtual std::vector<float> renderToFloats(const MTIImage& image, std::string* error = nullptr) = 0;

    /// Compiles what `image` needs, joined programs included, so that its first render does not stutter:
    /// takes up to some hundred milliseconds, or next to nothing when all is there. The destination is what
    /// `startRender` will be given, which decides the last passes; nothing is written into it.
    virtual void prepare(const MTIImage& image, const PixelBuffer& destination) = 0;
    virtual void prepare(const MTIImage& image, const MTIVulkanImage& destination) = 0;
    /// The same for a render to a bitmap, and for one that stays on the device.
    virtual void prepare(const MTIImage& image) = 0;

    /// Messages of the validation layer so far; empty without `validation`.
    virtual std::vector<std::string> validationMessages() const = 0;
    /// Bytes of device memory that the context holds now.
    virtual std::uint64_t allocatedBytes() const = 0;
};

}  // namespace qv
