#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Host/CommandLine/Failure.h"

namespace qv::host {

/// Where something stands in a document; nowhere when it comes from the command line.
struct DocumentPlace {
    std::string file;  ///< empty: no document
    int line = 0;      ///< counted from 1; 0 when unknown
    std::string path;  ///< as "clips[2].effects[0]"

    /// The place of a part of it: ".name", or "[2]".
    DocumentPlace part(const std::string& step) const { return {file, line, path + step}; }
};

/// What is wrong with an edit, gathered so that all of it is told at once.
class Mistakes {
  public:
    /// `code` holds where no document is to blame.
    void add(const DocumentPlace& place, ExitCode code, const std::string& text);
    /// Runs it, and takes its failure as a mistake; false then.
    bool guard(const DocumentPlace& place, const std::function<void()>& work);
    bool empty() const { return found_.empty(); }
    /// A line each, in the order of their places.
    std::vector<std::string> lines() const;
    /// Fails with all of them, a line each in the order of their places, as input where a document is to
    /// blame; else as the first one does.
    void check() const;

  private:
    struct Mistake {
        DocumentPlace place;
        ExitCode code;
        std::string text;
    };
    std::vector<Mistake> found_;
};

}  // namespace qv::host
