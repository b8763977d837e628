#!/usr/bin/env python3
"""Draws the icons of bilder/icons: the program's and the three roles', told apart by shape, in 16 to 48 pixels.

Needs ImageMagick. Run from the repository's root; the .ico files are checked in.
"""
import pathlib
import subprocess

SIZES = (16, 20, 24, 32, 40, 48)
OUTLINE = "#1d2b3a"

# Each drawing lives on a canvas of 48 by 48.
HEAD_AND_SHOULDERS = "circle 24,15 24,6 path 'M 7,44 C 7,30 15,26 24,26 C 33,26 41,30 41,44 Z'"
ICONS = {
    # a dotted outline with a question mark: nobody knows this contact's role yet
    "unbek": ["fill", "#eef1f4", "stroke", "#5b6875", "stroke-width", "3", "draw", HEAD_AND_SHOULDERS,
              "stroke", "none", "fill", "#3c4854", "font-size", "21", "text", "24,43 ?"],
    # a plain figure with a smaller one beside it: one of several
    "neben": ["fill", "#9fc3e8", "stroke", OUTLINE, "stroke-width", "3", "draw", HEAD_AND_SHOULDERS,
              "fill", "#ffffff", "draw", "circle 38,12 38,7 path 'M 30,26 C 30,20 34,18 38,18 C 42,18 46,20 46,26 Z'"],
    # a dark figure with a star: the one main contact
    "haupt": ["fill", "#2e75d6", "stroke", OUTLINE, "stroke-width", "3", "draw", HEAD_AND_SHOULDERS,
              "fill", "#ffd23f", "stroke", OUTLINE, "stroke-width", "2", "draw",
              "polygon 36,1 39,9 47,9 41,14 43,22 36,17 29,22 31,14 25,9 33,9"],
    # two cards, joined by an arrow
    "veldrak": ["fill", "#ffffff", "stroke", OUTLINE, "stroke-width", "3", "draw", "roundrectangle 3,5 27,25 3,3",
                "fill", "#1f4e8c", "draw", "roundrectangle 21,23 45,43 3,3",
                "fill", "none", "stroke", "#c2571a", "stroke-width", "4", "draw", "path 'M 8,30 L 8,36 L 16,36'",
                "fill", "#c2571a", "stroke", "none", "draw", "polygon 15,31 15,41 22,36",
                "stroke", "#5b6875", "stroke-width", "2", "draw", "line 8,12 22,12 line 8,18 18,18",
                "stroke", "#ffffff", "draw", "line 27,31 39,31 line 27,36 36,36"],
}


def mvg(words):
    """The drawing as ImageMagick vector commands."""
    lines, i = [], 0
    while i < len(words):
        if words[i] == "draw":
            lines += [part for part in words[i + 1].replace(" path ", "\npath ").replace(" line ", "\nline ").split("\n")]
        elif words[i] == "text":
            lines.append("text-anchor middle\nfont-weight 700\n" + "text %s '%s'" % tuple(words[i + 1].split(" ")))
        elif words[i] in ("fill", "stroke"):
            lines.append(f"{words[i]} '{words[i + 1]}'")
        else:
            lines.append(f"{words[i]} {words[i + 1]}")
        i += 2
    return "\n".join(lines)


def main():
    folder = pathlib.Path("bilder/icons")
    folder.mkdir(parents=True, exist_ok=True)
    for name, words in ICONS.items():
        large = ["/usr/bin/convert", "-size", "480x480", "xc:none", "-draw", "scale 10,10\n" + mvg(words)]
        frames = []
        for size in SIZES:
            frames += ["(", "-clone", "0", "-filter", "Lanczos", "-resize", f"{size}x{size}", ")"]
        subprocess.run(large + frames + ["-delete", "0", str(folder / f"{name}.ico")], check=True)


if __name__ == "__main__":
    main()
