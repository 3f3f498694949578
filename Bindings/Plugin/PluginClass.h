#pragma once

#include <string>

#include "QVFilterCore/QVFilterClass.h"

/// What other programs get of a class, and how it is called there.
namespace qv {

/// Whether such a host has what the class needs: one frame, for a transition two, and a mask.
bool isPluginClass(const QVFilterClass& filterClass);
/// Whether the class looks for a subject.
bool takesMask(const QVFilterClass& filterClass);
/// Whether a user of the host sets the property; the rest comes from the timeline.
bool isOffered(const QVFilterClass& filterClass, const QVProperty& property);

/// How a class comes as a service of MLT. One that looks for a subject does so as both: its second track as a
/// transition is the mask.
enum class MLTServiceKind { filter, transition };

/// "qv." and the class's name.
std::string serviceName(const QVFilterClass& filterClass);
bool isService(const QVFilterClass& filterClass, MLTServiceKind kind);
/// The class's title, with a word on the second track where that is a mask.
std::string serviceTitle(const QVFilterClass& filterClass, MLTServiceKind kind);
/// Whether the service follows keyframes of the property.
bool isAnimated(const QVProperty& property);

}  // namespace qv
