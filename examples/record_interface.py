"""Records the interface of a small model, reads it, changes it with a listener, and saves it to a file."""

import sys
import tempfile

import quay
from Varlow.ModelReference.internal.compileInfo import ModelRefInfoRoot, RateInfo


def record(model: quay.zero.Model) -> ModelRefInfoRoot:
    """Fills a record in one transaction."""
    with model.transaction():
        root = ModelRefInfoRoot(model, {"triggerType": 3})
        for lower, upper in ((-1.0, 1.0), (0.0, 10.0)):
            root.createIntoInports({"designMin": lower, "designMax": upper}).rateInfos.add(RateInfo())
    return root


def main() -> None:
    model = quay.zero.Model()
    root = record(model)
    print(f"{root!r} has {len(root.inports)} inports, designed from {[p.designMin for p in root.inports]}")

    model.enableHistory(10)
    root.inports[1].designMin = -5.0
    print("changed:", root.inports[1].designMin, "undone:", model.undo() and root.inports[1].designMin)
    try:
        with model.transaction():
            root.inports[0].designMax = 2.0
            root.inports[0].desginMin = -2.0  # type: ignore[attr-defined]
    except AttributeError as error:
        print(f"refused: {error}; rolled back: {root.inports[0].designMax}")

    path = sys.argv[1] if len(sys.argv) > 1 else tempfile.mkdtemp() + "/record.json"
    model.save(path)
    print("saved and loaded alike:", quay.zero.load(path).dumps() == model.dumps())


if __name__ == "__main__":
    main()
