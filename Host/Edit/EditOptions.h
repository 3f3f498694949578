#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Host/CommandLine/CommandParser.h"
#include "Host/Edit/Project.h"

/// The options of drawing commands that a project is made of.
namespace qv::host {

/// What the output's frames are like.
class FrameOptions {
  public:
    /// `fit` holds where none is given; without one the project's stays.
    explicit FrameOptions(std::string fit = {}) : fit_(std::move(fit)) {}
    void add(const Command& command, bool rate = true);
    /// Fails as usage. What is not given stays as it is.
    void apply(Project& project) const;

  private:
    std::string size_, rate_, fit_;
};

/// Of which part of an input is taken, for a command with one.
class PartOptions {
  public:
    /// `duration` says what --duration is of.
    void add(const Command& command, const char* duration);
    /// Fails as usage.
    void apply(ProjectClip& clip) const;

  private:
    std::string from_, to_, duration_;
};

/// Several inputs, each followed by the options of the part that is taken of it.
class InputList {
  public:
    void add(const Command& command);
    std::size_t size() const { return paths_.size(); }
    /// Fails as usage. To be called when the command runs.
    std::vector<ProjectClip> clips(const Command& command) const;

  private:
    std::vector<std::string> paths_, from_, to_;
};

/// The choices of -e, as effects of a project. Fails as usage.
std::vector<ProjectEffect> parseEffects(const std::vector<std::string>& texts);

}  // namespace qv::host
