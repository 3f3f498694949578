#version 450
#extension GL_GOOGLE_include_directive : require
#define WORDS 2
#include "fullscreen.glsl"
