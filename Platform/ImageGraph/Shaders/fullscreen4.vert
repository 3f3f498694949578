#version 450
#extension GL_GOOGLE_include_directive : require
#define WORDS 4
#include "fullscreen.glsl"
