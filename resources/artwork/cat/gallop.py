#!/usr/bin/env python3
"""Draws the running cat of the busy dialog: one SVG a frame, one gallop a loop.

    gallop.py FOLDER FRAMES    writes FOLDER/00.svg, 01.svg, ...

The cat runs to the right. Lengths are pixels of the 71 x 51 animation, y grows downwards. A phase of 0 is the gathered
jump (all paws under the belly), 0.5 the stretched one. Each paw follows a closed path of its own; the knees follow
from the lengths of the bones.
"""

import math
import pathlib
import sys

WIDTH, HEIGHT = 71, 51
GROUND = 47.6
CARD = "#f3f8fe"  # what the backdrop shows behind the animation
INK, FAR_INK, WHITE, ACCENT, TINT = "#2b2f36", "#565d69", "#ffffff", "#2f7fd8", "#8fb8e6"

# (phase, forward, height): a paw's way as seen from the joint it hangs from; height is that above the ground.
HIND_PAW = [(0.00, 6.5, 3.2), (0.12, 8.5, 0.0), (0.24, 1.5, 0.0), (0.36, -7.0, 0.0), (0.48, -13.0, 3.6),
            (0.62, -12.0, 8.2), (0.75, -4.5, 8.4), (0.88, 3.0, 6.0)]
FORE_PAW = [(0.00, -5.5, 5.0), (0.12, -5.0, 6.6), (0.25, 1.5, 6.8), (0.38, 9.0, 8.2), (0.50, 12.5, 6.0),
            (0.62, 9.5, 0.3), (0.74, 2.0, 0.0), (0.87, -6.0, 0.0)]


def along(keys, phase):
    """A closed Catmull-Rom curve through the keys; they may lie unevenly in time."""
    phase %= 1.0
    count = len(keys)
    after = next((i for i, key in enumerate(keys) if key[0] > phase), count)
    times = [keys[i % count][0] + i // count for i in range(after - 2, after + 2)]
    points = [keys[i % count][1:] for i in range(after - 2, after + 2)]
    u = (phase - times[1]) / (times[2] - times[1])
    result = []
    for a, b, c, d in zip(*points):
        span = times[2] - times[1]
        out, into = (c - a) / (times[2] - times[0]) * span, (d - b) / (times[3] - times[1]) * span
        result.append((2 * u**3 - 3 * u**2 + 1) * b + (u**3 - 2 * u**2 + u) * out
                      + (3 * u**2 - 2 * u**3) * c + (u**3 - u**2) * into)
    return result


def knee(joint, paw, upper, lower, bend):
    """Where two bones meet, and the paw, drawn in where it is out of reach.

    bend is +1 for a knee before the leg and -1 for one behind it.
    """
    dx, dy = paw[0] - joint[0], paw[1] - joint[1]
    reach = math.hypot(dx, dy)
    most = (upper + lower) * 0.985
    if reach > most:
        dx, dy, reach = dx * most / reach, dy * most / reach, most
    cosine = (upper**2 + reach**2 - lower**2) / (2 * upper * reach)
    angle = math.atan2(dy, dx) - bend * math.acos(max(-1.0, min(1.0, cosine)))
    return (joint[0] + upper * math.cos(angle), joint[1] + upper * math.sin(angle)), (joint[0] + dx, joint[1] + dy)


def n(value):
    return f"{value:.2f}".rstrip("0").rstrip(".")


def spot(x, y, radius, fill):
    return f'<circle cx="{n(x)}" cy="{n(y)}" r="{n(radius)}" fill="{fill}"/>'


def sausage(points, fill):
    """A limb through (x, y, radius) points, its width changing evenly from one to the next."""
    parts = []
    for (x0, y0, r0), (x1, y1, r1) in zip(points, points[1:]):
        steps = max(2, int(math.hypot(x1 - x0, y1 - y0) / 0.4))
        parts += [spot(x0 + (x1 - x0) * i / steps, y0 + (y1 - y0) * i / steps, r0 + (r1 - r0) * i / steps, fill)
                  for i in range(steps + 1)]
    return "".join(parts)


def bezier(a, b, c, d, count):
    return [tuple((1 - t)**3 * p + 3 * (1 - t)**2 * t * q + 3 * (1 - t) * t * t * r + t**3 * s
                  for p, q, r, s in zip(a, b, c, d)) for t in (i / count for i in range(count + 1))]


class Pose:
    def __init__(self, phase):
        turn = 2 * math.pi * phase
        self.phase = phase
        self.gather = math.cos(turn)  # +1 gathered, -1 stretched
        lift = -1.3 * math.cos(2 * turn)  # up in both jumps
        pitch = 2.0 * math.sin(turn)  # the fore end rises as the hind legs push
        self.length = 25.5 - 3.6 * self.gather
        middle = 34.5
        self.hip = (middle - self.length / 2 - 1.0, 30.9 + lift + pitch * 0.6)
        self.shoulder = (middle + self.length / 2 - 1.0, 30.9 + lift - pitch * 0.8)
        self.head = (self.shoulder[0] + 8.4 - 0.6 * self.gather, self.shoulder[1] - 8.9 + 0.9 * self.gather)

    def leg(self, hind, far):
        keys, joint = (HIND_PAW, self.hip) if hind else (FORE_PAW, self.shoulder)
        fill = FAR_INK if far else INK
        phase = self.phase - (0.09 if far else 0.0)
        forward, height = along(keys, phase)
        x = joint[0] + (1.2 if far else 0.0)
        root = (x, joint[1] + (0.6 if hind else 1.4))
        paw = (x + forward, GROUND - 1.7 - height)
        if hind:
            bend, end = knee(root, paw, 8.4, 8.8, 1)
            widths = (4.6, 2.9, 1.75)
        else:
            bend, end = knee(root, paw, 7.6, 8.4, -1)
            widths = (3.5, 2.2, 1.7)
        limb = sausage([(*root, widths[0]), (*bend, widths[1]), (*end, widths[2])], fill)
        return limb + sausage([(*end, 1.7), (end[0] + 1.5, end[1] + 0.1, 1.6)], fill)

    def tail(self):
        wave = math.sin(2 * math.pi * self.phase + 0.7)
        x, y = self.hip[0] - 3.0, self.hip[1] - 2.4
        line = bezier((x, y), (x - 9, y + 2.5 - 2.5 * wave), (x - 5, y - 11 + 2.5 * wave),
                      (x - 11, y - 13 + 4.5 * wave), 16)
        return sausage([(px, py, 1.9 - 0.35 * i / 16) for i, (px, py) in enumerate(line)], INK)

    def body(self):
        arch = 3.6 * self.gather
        spine = bezier(self.hip, (self.hip[0] + self.length * 0.33, self.hip[1] - 1.2 - arch),
                       (self.hip[0] + self.length * 0.66, self.shoulder[1] - 0.8 - arch), self.shoulder, 24)
        widths = [5.7 - 0.9 * math.sin(math.pi * i / 24) for i in range(25)]
        neck = sausage([(*self.shoulder, 5.6), (self.shoulder[0] + 4.4, self.shoulder[1] - 4.6, 4.4)], INK)
        return sausage([(x, y, r) for (x, y), r in zip(spine, widths)], INK) + neck

    def face(self):
        x, y = self.head
        tilt = 4 + 5 * math.sin(2 * math.pi * self.phase + 0.5)
        flap = 0.9 * self.gather
        return f'''<g transform="translate({n(x)} {n(y)}) rotate({n(tilt)})">
<path d="M1.5 -5.5L{n(4.6 - flap)} -10.6Q{n(5.2 - flap)} -11.4 {n(5.7 - flap)} -10.5L7.6 -3Z" fill="{FAR_INK}"/>
<ellipse rx="8.6" ry="7.2" fill="{INK}"/>
<path d="M-8 -1.5L{n(-6.7 - flap)} -10.6Q{n(-6.4 - flap)} -11.6 {n(-5.5 - flap)} -11L1 -6.3Z" fill="{INK}"/>
<path d="M-6.1 -4.9L{n(-5.6 - flap)} -9L-2.2 -6.4Z" fill="{TINT}"/>
<ellipse cx="5" cy="2.9" rx="3.3" ry="2.6" fill="{WHITE}"/>
<ellipse cx="7.6" cy="1.2" rx="1.1" ry=".85" fill="{ACCENT}"/>
<ellipse cx="2.4" cy="-1.3" rx="1.7" ry="2.1" fill="{WHITE}"/>
<ellipse cx="3" cy="-1.2" rx=".95" ry="1.5" fill="{INK}"/>
</g>'''

    def collar(self):
        x, y = self.shoulder[0] + 2.6, self.shoulder[1] - 3.6
        line = [(x - 2.0, y - 2.6, 0.95), (x + 1.3, y + 0.6, 0.95), (x + 4.2, y + 3.1, 0.95)]
        return sausage(line, ACCENT)

    def svg(self):
        parts = [self.leg(hind=True, far=True), self.leg(hind=False, far=True), self.tail(), self.body(),
                 self.leg(hind=True, far=False), self.leg(hind=False, far=False), self.collar(), self.face()]
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}">'
                f'<rect width="{WIDTH}" height="{HEIGHT}" fill="{CARD}"/>' + "\n".join(parts) + "</svg>\n")


def main():
    folder, frames = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    for frame in range(frames):
        (folder / f"{frame:02}.svg").write_text(Pose(frame / frames).svg(), encoding="utf-8")


if __name__ == "__main__":
    main()
