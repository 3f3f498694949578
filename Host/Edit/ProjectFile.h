#pragma once

#include <map>
#include <string>

#include "Host/Clips/MaskSource.h"
#include "Host/CommandLine/JSON.h"
#include "Host/Edit/Document.h"
#include "Host/Edit/Project.h"

/// Projects as files: JSON as Docs/edit.schema.json describes it.
namespace qv::host {

/// Values of the names that a document holds as ${name}.
using ProjectValues = std::map<std::string, std::string>;

/// The values of --set, each as name=value. Fails as usage.
ProjectValues parseValues(const std::vector<std::string>& texts);

/// Reads a project from a document's text, which may be OpenTimelineIO's, too (TimelineFile.h). `file` names
/// it in messages; names of files in it are relative to its folder. Every mistake is noted with its place; a
/// project with mistakes is not to be used. `note` is told what is left out. Fails as input where the
/// document is no JSON.
Project parseProject(const std::string& file, const std::string& text, const ProjectValues& values,
                     Mistakes& mistakes, const NoteSink& note);

/// The document of a project, which reads as the same project. What was included or had a name is written
/// out. Names of files become relative to `folder`, where one is given.
std::string projectText(const Project& project, const std::string& folder = {});

/// An effect or a transition in a document: {class, from, to, set}.
Json choiceToJSON(const EffectChoice& choice);

/// The command line that renders a project: `render` or `transition` where one of them does, else `edit` of
/// the file `projectFile`. Quoted for a shell.
std::string commandLine(const Project& project, const std::string& output, const std::string& projectFile);

}  // namespace qv::host
