"""Which changes are tried: a choice that a seed repeats, spread over the files and over the kinds of change."""

import random
from itertools import zip_longest

MIN_PER_FILE = 3


def quotas(sizes, count):
    """How many mutants each file gets: MIN_PER_FILE or what it has, and the large ones a share by which all together
    have at least count."""
    total = sum(sizes.values())

    def shared(amount):
        return {name: min(size, max(MIN_PER_FILE, round(amount * size / total))) for name, size in sizes.items()}

    return next((quota for quota in map(shared, range(total)) if sum(quota.values()) >= count), sizes)


def ordered(places, generator):
    """The changes of a file in the order in which they are tried, one place after the other.

    The kinds take turns, so that the rare ones are not lost among operands; a second change of a place comes after
    the first ones of all places, for files where too few of them compile.
    """
    by_kind = {}
    for place in places:
        alternatives = list(place)
        generator.shuffle(alternatives)
        by_kind.setdefault(place[0].kind, []).append(alternatives)
    for of_kind in by_kind.values():
        generator.shuffle(of_kind)
    kinds = sorted(by_kind)
    generator.shuffle(kinds)
    in_turn = [place for turn in zip_longest(*(by_kind[kind] for kind in kinds)) for place in turn if place]
    return [change for turn in zip_longest(*in_turn) for change in turn if change]


def choose(places_of_file, count, seed):
    """File name to (quota, changes in order)."""
    sizes = {name: len(places) for name, places in places_of_file.items() if places}
    return {name: (quota, ordered(places_of_file[name], random.Random(f"{seed} {name}")))
            for name, quota in quotas(sizes, count).items()}
