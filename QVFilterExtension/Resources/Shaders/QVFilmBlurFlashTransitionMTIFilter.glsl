// A picture seen through a lens. Inputs: picture, the barrel around the lens, square.
uniform float opening;  // scale of the barrel
uniform vec2 turn;      // cosine and sine of its turn, clockwise
uniform float cover;    // of the barrel, 0..1

vec4 QVFilmBlurFlashTransitionMTIFilter(vec2 uv) {
    vec2 away = (uv - 0.5) * outputSize() / opening;
    vec2 turned = vec2(turn.x * away.x + turn.y * away.y, turn.x * away.y - turn.y * away.x);
    vec4 barrel = readInput(1, 0.5 + turned / inputSize(1)) * cover;
    return barrel + readHere(0) * (1.0 - barrel.a);
}
