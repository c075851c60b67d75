#!/usr/bin/env python3
"""Writes examples/walk.bvh: a small walking skeleton (hips, spine, head, two arms and two
legs, with End Sites) whose joints use several channel orders, and 300 frames at 30 frames
per second. The motion is a few sine waves, so the file is the same on every run.

    tools/make_walk_bvh.py [OUTPUT]   (default: examples/walk.bvh)"""
import math
import pathlib
import sys

FRAMES = 300
FRAME_TIME = 0.0333333

# name, offset, channel line (None for an End Site), children
SKELETON = (
    'Hips', (0.0, 92.0, 0.0), '6 Xposition Yposition Zposition Zrotation Xrotation Yrotation', [
        ('Spine', (0.0, 10.5, -1.2), '3 Zrotation Xrotation Yrotation', [
            ('Neck', (0.0, 38.0, 0.5), '3 Zrotation Yrotation Xrotation', [
                ('Head', (0.0, 9.0, 1.5), '3 Xrotation Yrotation Zrotation', [
                    ('End Site', (0.0, 18.0, 0.0), None, []),
                ]),
            ]),
            ('Left_Arm', (17.0, 34.0, 0.0), '3 Yrotation Zrotation Xrotation', [
                ('Left_Forearm', (28.0, 0.0, 0.0), '3 Yrotation Xrotation Zrotation', [
                    ('End Site', (25.0, 0.0, 0.0), None, []),
                ]),
            ]),
            ('Right_Arm', (-17.0, 34.0, 0.0), '3 Yrotation Zrotation Xrotation', [
                ('Right_Forearm', (-28.0, 0.0, 0.0), '3 Yrotation Xrotation Zrotation', [
                    ('End Site', (-25.0, 0.0, 0.0), None, []),
                ]),
            ]),
        ]),
        ('LeftUpLeg', (9.5, -4.0, 0.0), '3 Xrotation Zrotation Yrotation', [
            ('LeftLeg', (0.0, -43.0, 0.0), '3 Xrotation Zrotation Yrotation', [
                ('LeftFoot', (0.0, -41.0, -2.0), '3 Zrotation Xrotation Yrotation', [
                    ('End Site', (0.0, -6.0, 14.0), None, []),
                ]),
            ]),
        ]),
        ('RightUpLeg', (-9.5, -4.0, 0.0), '3 Xrotation Zrotation Yrotation', [
            ('RightLeg', (0.0, -43.0, 0.0), '3 Xrotation Zrotation Yrotation', [
                ('RightFoot', (0.0, -41.0, -2.0), '3 Zrotation Xrotation Yrotation', [
                    ('End Site', (0.0, -6.0, 14.0), None, []),
                ]),
            ]),
        ]),
    ])


def write_joint(lines, joint, depth, keyword):
    name, offset, channels, children = joint
    pad = '\t' * depth
    lines.append(f'{pad}{keyword} {name}' if channels else f'{pad}{name}')
    lines.append(f'{pad}{{')
    lines.append(f'{pad}\tOFFSET ' + ' '.join(f'{v:.2f}' for v in offset))
    if channels:
        lines.append(f'{pad}\tCHANNELS {channels}')
    for child in children:
        write_joint(lines, child, depth + 1, 'JOINT')
    lines.append(f'{pad}}}')


def channel_count(joint):
    _, _, channels, children = joint
    own = int(channels.split()[0]) if channels else 0
    return own + sum(channel_count(child) for child in children)


def frame_values(frame, count):
    phase = 2 * math.pi * frame / 40.0  # one stride every 40 frames
    values = [0.8 * frame, 92.0 + 1.5 * math.sin(2 * phase), 0.3 * math.sin(phase)]
    for channel in range(3, count):
        values.append(25.0 * math.sin(phase + 0.7 * channel) * (1.0 if channel % 2 else 0.4))
    return values


def main():
    out = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else
                       pathlib.Path(__file__).resolve().parent.parent / 'examples/walk.bvh')
    lines = ['HIERARCHY']
    write_joint(lines, SKELETON, 0, 'ROOT')
    count = channel_count(SKELETON)
    lines += ['MOTION', f'Frames: {FRAMES}', f'Frame Time: {FRAME_TIME}']
    for frame in range(FRAMES):
        lines.append(' '.join(f'{v:.4f}' for v in frame_values(frame, count)))
    out.write_text('\n'.join(lines) + '\n')


if __name__ == '__main__':
    main()
