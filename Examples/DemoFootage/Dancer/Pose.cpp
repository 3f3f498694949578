#include "Examples/DemoFootage/Dancer/Pose.h"

#include <cmath>

namespace qv::assets {
namespace {

constexpr float kPi = 3.14159265f;
constexpr float kBeats = 12;  ///< of the whole dance, two a second
constexpr float kThigh = 0.44f, kShin = 0.44f, kUpperArm = 0.285f, kForearm = 0.255f;

/// 0..1..0 between the given beats.
float during(float beat, float in, float full, float out, float gone) {
    return smoothstep(in, full, beat) * (1 - smoothstep(out, gone, beat));
}

Vec3 turned(Vec3 v, float yaw) {
    const float c = std::cos(yaw), s = std::sin(yaw);
    return {c * v.x + s * v.z, v.y, c * v.z - s * v.x};
}

/// The middle joint of a limb from `from` to `to`, bent towards `pole`. `to` moves into reach if it is not.
Vec3 bend(Vec3 from, Vec3& to, float first, float second, Vec3 pole) {
    Vec3 axis = to - from;
    const float reach = std::min(length(axis), 0.995f * (first + second));
    axis = normalize(axis);
    to = from + axis * reach;
    const float along = (first * first - second * second + reach * reach) / (2 * reach);
    const float aside = std::sqrt(std::max(first * first - along * along, 0.0f));
    return from + axis * along + normalize(pole - axis * dot(pole, axis)) * aside;
}

struct Foot {
    float x, lift, heel;  ///< heel: 0 flat on the ground, 1 on the toes
};

/// Step out, close; step back, close: in four beats, the left foot's pattern being the right one's two beats
/// later.
Foot stepping(float beat, bool rightSide) {
    const float p = std::fmod(beat + (rightSide ? 0.0f : 2.0f), 4.0f), sign = rightSide ? 1.0f : -1.0f;
    constexpr float kWide = 0.33f, kClosed = -0.11f;
    const auto move = [](float u) { return smoothstep(0.08f, 0.88f, u); };
    const auto arc = [](float u) { return std::sin(kPi * smoothstep(0.05f, 0.92f, u)); };
    if (p < 1) return {sign * mix(kClosed, kWide, move(p)), 0.09f * arc(p), 1 - smoothstep(0.5f, 1, p)};
    if (p < 3) return {sign * kWide, 0, 0.5f * smoothstep(2.6f, 3, p)};
    return {sign * mix(kWide, kClosed, move(p - 3)), 0.10f * arc(p - 3),
            0.5f + 0.5f * smoothstep(0.2f, 0.9f, p - 3)};
}

/// All but the hair, whose swing depends on where the head was.
Pose bodyAt(double seconds) {
    const float beat = float(std::fmod(seconds * 2 + kBeats, kBeats));
    const float quarter = kPi / 2 * beat;                        // a turn of the sway in four beats
    const float pulse = 0.5f + 0.5f * std::cos(2 * kPi * beat);  // 1 on the beat
    const float raised = during(beat, 3.4f, 4.3f, 7.4f, 8.2f);
    const float spinning = during(beat, 7.7f, 8.3f, 10.1f, 10.8f);
    const float spin = 2 * kPi * smoothstep(8.15f, 10.15f, beat);

    Pose pose;
    const float sway = -std::cos(quarter - 0.4f) * (1 - 0.75f * spinning);
    const float hipYaw = spin + 0.20f * std::sin(quarter + 0.2f);
    const float chestYaw = spin - 0.30f * std::sin(quarter - 0.5f) * (1 - 0.6f * spinning);
    const float headYaw = spin * 1.0f + 0.22f * sway;
    const float crouch =
        0.045f * pulse + 0.02f + 0.02f * raised * std::sin(quarter * 2) * std::sin(quarter * 2);
    pose.pelvis = {0.20f * sway, 0.945f - crouch + 0.035f * spinning, 0};
    const float lean = 0.055f * std::sin(quarter - 0.9f) * (1 - spinning);
    pose.waist = pose.pelvis + turned({lean * 0.4f, 0.17f, -0.01f}, chestYaw * 0.5f + hipYaw * 0.5f);
    pose.chest = pose.waist + turned({lean * 1.4f, 0.255f - 0.01f * pulse, 0.015f + 0.02f * pulse}, chestYaw);
    pose.right = turned(normalize({1, -0.22f * std::sin(quarter - 0.7f) - 0.05f * sway, 0}), chestYaw);
    pose.forward = turned({0, 0, 1}, chestYaw);
    pose.neck = pose.chest + Vec3{lean * 0.4f, 0.10f, 0} + pose.forward * 0.012f;
    pose.headForward = turned(normalize({0, -0.10f - 0.16f * pulse + 0.14f * raised, 1}), headYaw);
    pose.headRight = turned(normalize({1, 0.10f * sway, 0}), headYaw);
    pose.head = pose.neck + Vec3{-0.02f * sway, 0.135f, 0} + pose.headForward * (0.028f + 0.02f * pulse);

    for (int i = 0; i < 2; ++i) {
        const float side = i ? 1.0f : -1.0f;
        const Vec3 hipRight = turned({1, 0, 0}, hipYaw);
        Foot foot = stepping(beat, i == 1);
        const Vec3 together = turned({0.12f * side, 0, 0.05f * side}, spin);
        const float hop = 0.05f * spinning * std::abs(std::sin(2 * kPi * beat + (i ? kPi / 2 : 0)));
        const float footYaw = spin + side * 0.28f;
        Vec3 ground{mix(foot.x, together.x + 0.4f * pose.pelvis.x, spinning), 0,
                    mix(0.05f * foot.heel, together.z, spinning)};
        const float heel = mix(foot.heel, 0.55f, spinning);
        pose.hips[std::size_t(i)] = pose.pelvis + hipRight * (0.095f * side) + Vec3{0, -0.03f, 0};
        pose.ankles[std::size_t(i)] = ground +
                                      Vec3{0, 0.085f + mix(foot.lift, hop, spinning) + 0.055f * heel, 0} -
                                      turned({0, 0, 0.03f * heel}, footYaw);
        pose.knees[std::size_t(i)] = bend(pose.hips[std::size_t(i)], pose.ankles[std::size_t(i)], kThigh,
                                          kShin, turned({side * 0.35f, 0, 1}, hipYaw));
        pose.toes[std::size_t(i)] =
            pose.ankles[std::size_t(i)] + turned({0, -0.052f - 0.05f * heel, 0.15f}, footYaw);

        // Hands in the chest's frame: low and alternating, then up, then flung out.
        const float swing = quarter + (i ? 0.0f : kPi);
        const Vec3 low{0.27f + 0.11f * std::sin(swing),
                       -0.10f + 0.17f * std::cos(swing * 1.0f - 0.6f) + 0.03f * pulse,
                       0.24f + 0.12f * std::sin(swing + 0.9f)};
        const float wave = std::sin(quarter * 2 - 0.4f);
        const Vec3 high{0.24f + 0.16f * wave * side, 0.50f - 0.05f * wave * side - 0.03f * pulse, 0.10f};
        const Vec3 wide{0.50f, 0.05f + 0.09f * side * std::sin(spin), 0.05f};
        const Vec3 hand = mix(mix(low, high, raised), wide, spinning);
        const Vec3 up = normalize(cross(pose.forward, pose.right));
        pose.shoulders[std::size_t(i)] =
            pose.chest + pose.right * (0.165f * side) + Vec3{0, 0.025f + 0.035f * raised + 0.012f * pulse, 0};
        Vec3 wrist = pose.shoulders[std::size_t(i)] + pose.right * (side * (hand.x - 0.12f)) + up * hand.y +
                     pose.forward * hand.z;
        const Vec3 pole = pose.right * side * (0.8f + 0.5f * raised) + Vec3{0, -0.9f + 1.2f * raised, 0} -
                          pose.forward * 0.35f;
        pose.elbows[std::size_t(i)] = bend(pose.shoulders[std::size_t(i)], wrist, kUpperArm, kForearm, pole);
        pose.wrists[std::size_t(i)] = wrist;
        pose.hands[std::size_t(i)] = wrist + normalize(normalize(wrist - pose.elbows[std::size_t(i)]) +
                                                       Vec3{0.25f * side, 0.2f * wave * raised, 0.15f}) *
                                                 0.085f;
    }
    pose.tailRoot = pose.head - pose.headForward * 0.105f + Vec3{0, 0.02f, 0};
    return pose;
}

}  // namespace

Pose danceAt(double seconds) {
    Pose pose = bodyAt(seconds);
    // The plait hangs behind the head and follows it late.
    const Vec3 before = bodyAt(seconds - 0.09).tailRoot, longBefore = bodyAt(seconds - 0.17).tailRoot;
    pose.tailMiddle =
        pose.tailRoot + (before - pose.tailRoot) * 0.75f + Vec3{0, -0.12f, 0} - pose.headForward * 0.05f;
    pose.tailTip =
        pose.tailRoot + (longBefore - pose.tailRoot) * 1.0f + Vec3{0, -0.27f, 0} - pose.headForward * 0.045f;
    return pose;
}

}  // namespace qv::assets
