"""compare.py TEXT: compares the frames that LaserBoy wrote as text with a dump of the recording on
standard input. Only zone 1 of the dump is compared, up to the maximum frames of an ILDA file."""
import sys

MOST_FRAMES = 65535


def place(text):
    """A coordinate as exported; LaserBoy's minimum is -32767."""
    return max(-32767, min(32767, round(float(text))))


def recorded_frames(lines):
    """Each frame as a list of (x, y, colour), colour None where blanked."""
    frames, keep = [], False
    for line in lines:
        words = line.split()
        if words[0] == "frame":
            keep = words[2] == "0"
            if keep:
                frames.append([])
        elif words[0][0] in "-0123456789" and keep:
            x, y, _, color, flags = words
            color = int(color, 16)
            dark = color == 0 or flags == "3"
            frames[-1].append((place(x), place(y), None if dark else color))
    # An empty section would end the file, so an empty frame is exported as one blanked point.
    return [frame or [(0, 0, None)] for frame in frames[:MOST_FRAMES]]


def read_frames(path):
    """The same from LaserBoy's text: for each frame a table of colours, -1 for blanked, then the
    positions."""
    frames, colors, places, table = [], [], [], None
    with open(path) as text:
        for line in text:
            words = line.split()
            if not words or words[0].startswith("#"):
                continue
            if words == ["table", "rgb"]:
                colors, table = [], "colors"
            elif words == ["frame", "xy", "table", "short"]:
                places = []
                frames.append((colors, places))
                table = "places"
            elif table == "colors":
                parts = [int(word) for word in words]
                colors.append(None if parts == [-1] else parts[0] << 16 | parts[1] << 8 | parts[2])
            elif table == "places":
                places.append(tuple(int(word) for word in words))
            else:
                sys.exit(f"Not understood: {line}")
    for number, (colors, places) in enumerate(frames):
        if len(colors) != len(places):
            sys.exit(f"Frame {number} has {len(colors)} colours and {len(places)} places.")
    return [[(x, y, color) for color, (x, y) in zip(*frame)] for frame in frames]


def main():
    expected = recorded_frames(sys.stdin)
    found = read_frames(sys.argv[1])
    if len(found) != len(expected):
        sys.exit(f"{len(found)} frames instead of {len(expected)}")
    for number, (ours, theirs) in enumerate(zip(expected, found)):
        if len(ours) != len(theirs):
            sys.exit(f"Frame {number}: {len(theirs)} points instead of {len(ours)}")
        for index, (mine, other) in enumerate(zip(ours, theirs)):
            if mine != other:
                sys.exit(f"Frame {number}, point {index}: {other} instead of {mine}")
    points = [point for frame in expected for point in frame]
    colors = {color for _, _, color in points if color is not None}
    # If red equals blue in every colour, swapped components would go undetected.
    if not any(color >> 16 != color & 0xFF for color in colors):
        sys.exit("No colour would show a swapped order.")
    blanked = sum(color is None for _, _, color in points)
    print(f"{len(expected)} frames, {len(points)} points, {blanked} of them blanked, colours "
          + ", ".join(f"{color:06X}" for color in sorted(colors)) + ": all equal")


main()
