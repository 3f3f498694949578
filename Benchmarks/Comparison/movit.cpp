// The OpenGL filter library movit's part of the comparison: milliseconds a frame of each job, one a line. The
// frames are declared linear and premultiplied, so that it works on the stored values as this library does
// and spends nothing on conversions; its textures between passes have 8 bits for the same reason.

#include <epoxy/egl.h>
#include <epoxy/gl.h>
#include <movit/blur_effect.h>
#include <movit/effect_chain.h>
#include <movit/flat_input.h>
#include <movit/init.h>
#include <movit/luma_mix_effect.h>
#include <movit/mix_effect.h>
#include <movit/multiply_effect.h>
#include <movit/saturation_effect.h>

#include <cmath>
#include <memory>
#include <stdexcept>

#include "Benchmarks/Comparison/Comparison.h"

namespace {

using qv::comparison::Pictures;

void check(bool success, const char* what) {
    if (!success) throw std::runtime_error(std::string(what) + " failed");
}

/// A current OpenGL context without a window.
void makeContext() {
    const EGLDisplay display =
        eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    check(eglInitialize(display, nullptr, nullptr) && eglBindAPI(EGL_OPENGL_API), "starting EGL");
    const EGLContext context = eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, nullptr);
    check(eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context), "an OpenGL context");
}

movit::ImageFormat storedValues() {
    movit::ImageFormat format;
    format.color_space = movit::COLORSPACE_sRGB;
    format.gamma_curve = movit::GAMMA_LINEAR;
    return format;
}

/// One job: its chain of effects and the texture that it draws to.
class Job {
  public:
    explicit Job(const Pictures& pictures)
        : pictures_(pictures), chain_(float(pictures.first.width), float(pictures.first.height)) {}
    ~Job() { glDeleteTextures(1, &texture_); }

    movit::Effect* input(const qv::Bitmap& bitmap) {
        auto* input = new movit::FlatInput(storedValues(), movit::FORMAT_RGBA_PREMULTIPLIED_ALPHA,
                                           GL_UNSIGNED_BYTE, unsigned(bitmap.width), unsigned(bitmap.height));
        input->set_pixel_data(bitmap.pixels->data());
        return chain_.add_input(input);
    }
    movit::Effect* first() { return input(pictures_.first); }
    movit::Effect* second() { return input(pictures_.second); }

    movit::Effect* saturated(movit::Effect* source, float saturation) {
        auto* effect = chain_.add_effect(new movit::SaturationEffect, source);
        check(effect->set_float("saturation", saturation), "saturation");
        return effect;
    }
    movit::Effect* exposed(movit::Effect* source, float stops) {
        auto* effect = chain_.add_effect(new movit::MultiplyEffect, source);
        const float gain = std::exp2(stops), factor[4] = {gain, gain, gain, 1};
        check(effect->set_vec4("factor", factor), "factor");
        return effect;
    }
    movit::Effect* mixed(movit::Effect* source, movit::Effect* other, float share) {
        auto* effect = chain_.add_effect(new movit::MixEffect, source, other);
        check(effect->set_float("strength_first", 1 - share) && effect->set_float("strength_second", share),
              "mix");
        return effect;
    }
    movit::Effect* wiped(movit::Effect* source, movit::Effect* other, movit::Effect* luma) {
        auto* effect = chain_.add_effect(new movit::LumaMixEffect, source, other, luma);
        check(effect->set_float("progress", 0.5f), "wipe");
        return effect;
    }
    movit::Effect* blurred(movit::Effect* source, float radius) {
        auto* effect = chain_.add_effect(new movit::BlurEffect, source);
        check(effect->set_float("radius", radius), "blur");
        return effect;
    }

    void run(const std::string& name) {
        const int width = pictures_.first.width, height = pictures_.first.height;
        chain_.add_output(storedValues(), movit::OUTPUT_ALPHA_FORMAT_PREMULTIPLIED);
        chain_.set_output_origin(movit::OUTPUT_ORIGIN_TOP_LEFT);
        chain_.set_intermediate_format(GL_RGBA8);
        chain_.finalize();
        glGenTextures(1, &texture_);
        glBindTexture(GL_TEXTURE_2D, texture_);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
        qv::comparison::report(name, [&] {
            chain_.render_to_texture({{texture_, GL_RGBA8}}, unsigned(width), unsigned(height));
            glFinish();
        });
        check(glGetError() == GL_NO_ERROR, name.c_str());
        if (!pictures_.folder.empty()) keep(name);
    }

  private:
    void keep(const std::string& name) {
        auto pixels = std::make_shared<std::vector<std::uint8_t>>(pictures_.first.pixels->size());
        glBindTexture(GL_TEXTURE_2D, texture_);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels->data());
        std::string error;
        const qv::Bitmap result{pictures_.first.width, pictures_.first.height, std::move(pixels)};
        if (!qv::writePNG(result, pictures_.folder + "/movit-" + name + ".png", &error))
            throw std::runtime_error(error);
    }

    const Pictures& pictures_;
    movit::EffectChain chain_;
    GLuint texture_ = 0;
};

void compare(const Pictures& pictures) {
    makeContext();
    check(movit::init_movit(MOVIT_SHADERS, movit::MOVIT_DEBUG_OFF), "starting movit");
    const auto job = [&](const std::string& name, const std::function<void(Job&)>& build) {
        Job job(pictures);
        build(job);
        job.run(name);
    };
    job("copy", [](Job& job) { job.first(); });
    job("dissolve", [](Job& job) { job.mixed(job.first(), job.second(), 0.5f); });
    job("saturation", [](Job& job) { job.saturated(job.first(), qv::comparison::kSaturation); });
    job("blur", [](Job& job) { job.blurred(job.first(), qv::comparison::kBlurSigma); });
    job("wipe", [](Job& job) { job.wiped(job.first(), job.second(), job.second()); });
    job("chain", [](Job& job) {
        movit::Effect* image = job.first();
        movit::Effect* second = job.second();
        for (const auto& step : qv::comparison::kChain) {
            image = job.exposed(job.saturated(image, step.saturation), step.stops);
            if (step.mix > 0) image = job.mixed(image, second, step.mix);
        }
    });
}

}  // namespace

int main(int argc, char** argv) {
    Pictures pictures;
    if (!qv::comparison::readPictures(argc, argv, pictures)) return 2;
    try {
        compare(pictures);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
