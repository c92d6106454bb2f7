"""Changes a record, undoing one of the changes, and saves it to another file: change_record.py OLD NEW."""

import sys

import quay
from Varlow.ModelReference.internal.compileInfo import ModelRefInfoRoot


def main(old: str, new: str) -> None:
    model = quay.zero.load(old)
    (root,) = model.roots()
    assert isinstance(root, ModelRefInfoRoot)
    port = root.inports[0]
    model.enableHistory(10)

    port.designMax = 1e6
    with model.transaction():
        root.createIntoInports({"designMin": 0.0})
    print(f"changed: designMax is {port.designMax}, {len(root.inports)} inports")
    model.undo()
    print(f"undone once: designMax is {port.designMax}, {len(root.inports)} inports")
    model.save(new)


if __name__ == "__main__":
    main(*sys.argv[1:])
