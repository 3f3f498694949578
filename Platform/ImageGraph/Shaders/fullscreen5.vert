#version 450
#extension GL_GOOGLE_include_directive : require
#define WORDS 5
#include "fullscreen.glsl"
