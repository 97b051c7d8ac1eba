#!/usr/bin/env python3
"""Fits the weights of the transcript's confidence to the features of zelvora_voice_bench.

usage: fit_confidence.py FEATURES [RECOGNISER [WEIGHT]]

FEATURES is what `zelvora_voice_bench --features FEATURES` wrote: a line a clip with recogniser, kind of
sound, number of the clip, whether its text opens the right task, and the evidence. The weights are fitted
to people and to sentences out of domain, which count WEIGHT (0.06) each, because a user seldom says one.
All clips of one sentence are in one fold. Commands and paraphrases of the shop are not fitted to: they
show how the weights do in another domain. The last weight is set: what opens nothing is doubted, but not so
much that a clear transcript that leads to choices would be dropped. Standard library only.

Ends with 1 when people's right and other transcripts are not far enough apart.
"""

import math
import random
import sys

FOLDS = 5
MINIMUM = 0.65
PENALTY = 0.5
OPENS_NOTHING = -1.0
LEAST_AREA = 0.85
VOICES = {"flite": 3, "espeak": 2}


def read(path, recogniser):
    rows = []
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            fields = line.rstrip("\n").split("\t")
            if fields[0] != recogniser:
                continue
            sound, number = fields[1], int(fields[2])
            per_sentence = next((n for voice, n in VOICES.items() if voice in sound), 1)
            group = (sound.split(",")[0], number // per_sentence)
            rows.append((sound, group, int(fields[3]), [float(x) for x in fields[4:]]))
    return rows


def chance(weights, evidence):
    """`weights` are those of all the evidence but the last."""
    total = sum(w * x for w, x in zip(weights, evidence)) + OPENS_NOTHING * evidence[-1]
    return 1 / (1 + math.exp(-max(-30.0, min(30.0, total))))


def solve(matrix, vector):
    n = len(vector)
    rows = [row[:] + [value] for row, value in zip(matrix, vector)]
    for i in range(n):
        pivot = max(range(i, n), key=lambda r: abs(rows[r][i]))
        rows[i], rows[pivot] = rows[pivot], rows[i]
        for r in range(n):
            if r != i:
                factor = rows[r][i] / rows[i][i]
                rows[r] = [a - factor * b for a, b in zip(rows[r], rows[i])]
    return [rows[i][n] / rows[i][i] for i in range(n)]


def fit(rows, strange_weight):
    """Newton's method with a penalty on all weights except the first."""
    size = len(rows[0][3]) - 1
    weights = [0.0] * size
    for _ in range(15):
        gradient = [0.0] * size
        hessian = [[1e-6 if i == j else 0.0 for j in range(size)] for i in range(size)]
        for sound, _group, right, x in rows:
            share = strange_weight if sound.startswith("out") else 1.0
            p = chance(weights, x)
            for i in range(size):
                gradient[i] += share * (right - p) * x[i]
                for j in range(size):
                    hessian[i][j] += share * p * (1 - p) * x[i] * x[j]
        for i in range(1, size):
            gradient[i] -= PENALTY * weights[i]
            hessian[i][i] += PENALTY
        weights = [w + d for w, d in zip(weights, solve(hessian, gradient))]
    return weights


def out_of_fold(rows, strange_weight):
    groups = sorted({row[1] for row in rows})
    random.Random(1).shuffle(groups)
    fold = {group: i % FOLDS for i, group in enumerate(groups)}
    chances = [0.0] * len(rows)
    for k in range(FOLDS):
        weights = fit([row for row in rows if fold[row[1]] != k], strange_weight)
        for i, row in enumerate(rows):
            if fold[row[1]] == k:
                chances[i] = chance(weights, row[3])
    return chances


def area(high, low):
    pairs = [(a, b) for a in high for b in low]
    return sum(1.0 if a > b else 0.5 if a == b else 0.0 for a, b in pairs) / len(pairs) if pairs else math.nan


def area_of(sample):
    return area([p for p, right in sample if right], [p for p, right in sample if not right])


def area_with_interval(rows, chances):
    """With the 95 % interval of 1,000 draws with replacement."""
    data = [(p, row[2]) for row, p in zip(rows, chances)]
    chooser = random.Random(2)
    drawn = sorted(a for a in (area_of(chooser.choices(data, k=len(data))) for _ in range(1000)) if not math.isnan(a))
    if not drawn:
        return "no AUC"
    return "AUC %.2f [%.2f, %.2f]" % (area_of(data), drawn[int(0.025 * len(drawn))], drawn[int(0.975 * len(drawn))])


def share(part, whole, z=1.96):
    if whole == 0:
        return "none"
    p = part / whole
    scale = 1 + z * z / whole
    middle = (p + z * z / (2 * whole)) / scale
    half = z * math.sqrt(p * (1 - p) / whole + z * z / (4 * whole * whole)) / scale
    return "%d of %d, %.1f %% [%.1f, %.1f]" % (part, whole, 100 * p, 100 * (middle - half), 100 * (middle + half))


def report(name, rows, chances):
    for sound in sorted({row[0] for row in rows}):
        mine = [(row, p) for row, p in zip(rows, chances) if row[0] == sound]
        believed = [row for row, p in mine if p >= MINIMUM]
        right = sum(row[2] for row in believed)
        print(f"{name:12} {sound:20} right and believed {share(right, len(mine))}; right of the believed "
              f"{share(right, len(believed))}; {area_with_interval(*zip(*mine))}")


def main():
    recogniser = sys.argv[2] if len(sys.argv) > 2 else "pocketsphinx"
    strange_weight = float(sys.argv[3]) if len(sys.argv) > 3 else 0.06
    rows = read(sys.argv[1], recogniser)
    fitted = [row for row in rows if row[0] == "people" or row[0] in ("out of domain, flite", "out of domain, espeak")]
    others = [row for row in rows if row not in fitted]
    if not any(row[0] == "people" for row in rows):
        sys.exit("no people to fit to")
    chances = out_of_fold(fitted, strange_weight)
    report("out of fold", fitted, chances)
    weights = fit(fitted, strange_weight)
    report("transferred", others, [chance(weights, row[3]) for row in others])
    print("weights: {" + ", ".join("%.2f" % w for w in [*weights, OPENS_NOTHING]) + "}")
    reached = area_of([(p, row[2]) for row, p in zip(fitted, chances) if row[0] == "people"])
    holds = reached >= LEAST_AREA
    print(f"people: area under the curve, out of fold {reached:.2f} >= {LEAST_AREA}  {'holds' if holds else 'DOES NOT HOLD'}")
    sys.exit(0 if holds else 1)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main()
