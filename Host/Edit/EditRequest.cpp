#include "Host/Edit/EditRequest.h"

#include "Host/Edit/Document.h"
#include "Host/Edit/ProjectFile.h"

namespace qv::host {

void EditRequest::add(const Command& command) {
    command
        .option("file", file,
                "Project, JSON as Docs/edit.schema.json describes it, or .otio; - is standard input")
        .required();
    command.option("--set", values, "name=value of a ${name} in the project; repeatable");
    frames.add(command);
    output.encoding.add(command);
    output.overwrite.add(command);
    output.device.add(command);
}

Project EditRequest::project() const {
    const std::string name = file == "-" ? kStandardInput : file;
    const auto note = [&](const std::string& line) { output.encoding.note(line); };
    Mistakes mistakes;
    Project project = parseProject(name, readDocumentText(name), parseValues(values), mistakes, note);
    mistakes.check();
    frames.apply(project);
    return project;
}

}  // namespace qv::host
