#include "Platform/ImageGraph/Native/LoadedKernel.h"

#include <sys/mman.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace qv {

std::shared_ptr<const LoadedKernel> LoadedKernel::load(std::span<const std::byte> code, std::string* error) {
    const auto refuse = [&](const std::string& cause) {
        if (error) *error = "a kernel cannot be loaded: " + cause;
        return nullptr;
    };
    KernelCodeHeader header;
    if (code.size() <= sizeof header) return refuse("it is not whole");
    std::memcpy(&header, code.data(), sizeof header);
    const std::span<const std::byte> body = code.subspan(sizeof header);
    if (header.magic != KernelCodeHeader().magic || header.entry >= body.size())
        return refuse("it is of another kind");

    const std::shared_ptr<LoadedKernel> kernel(new LoadedKernel);
    void* const pages =
        ::mmap(nullptr, body.size(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) return refuse(std::generic_category().message(errno));
    kernel->pages_ = pages;
    kernel->bytes_ = body.size();
    auto* const begin = static_cast<char*>(pages);
    std::memcpy(begin, body.data(), body.size());
    if (::mprotect(pages, body.size(), PROT_READ | PROT_EXEC) != 0)
        return refuse("memory cannot be made executable: " + std::generic_category().message(errno));
    __builtin___clear_cache(begin, begin + body.size());
    kernel->function_ = reinterpret_cast<NativeKernel>(begin + header.entry);
    return kernel;
}

LoadedKernel::~LoadedKernel() {
    if (pages_) ::munmap(pages_, bytes_);
}

}  // namespace qv
