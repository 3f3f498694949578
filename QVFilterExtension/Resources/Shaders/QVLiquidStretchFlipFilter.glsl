vec4 QVLiquidStretchFlipFilter(vec2 uv) {
    ivec2 here = pixelHere();
    return readPixel(0, ivec2(int(outputSize().x) - 1 - here.x, here.y));
}
