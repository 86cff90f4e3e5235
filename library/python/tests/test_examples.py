"""The examples do what they promise, at small size."""

import doctest
import os
import pathlib
import re
import subprocess
import sys
import types

import attenuate
import pytest

TOP = pathlib.Path(__file__).parents[3]
EXAMPLES = TOP / "docs" / "examples"


def run(*words: object, **environment: str) -> str:
    return subprocess.run(
        [str(word) for word in words], env={**os.environ, **environment},
        stdout=subprocess.PIPE, text=True, check=True).stdout


def test_radiograph_survives_the_end_of_a_worker(tmp_path: pathlib.Path) -> None:
    pytest.importorskip("distributed")
    said = run(sys.executable, EXAMPLES / "radiograph.py", "--pixels", 300,
               "--chunk", 30, "--energies", 40, "--end-a-worker", "--compare",
               "--output", tmp_path / "image.npy")
    assert "is killed" in said
    assert "every pixel is the same" in said


def test_lists_are_answered_in_order_on_all_places(
        tmp_path: pathlib.Path) -> None:
    program = os.environ.get("ATTENUATE_PROGRAM", "")
    if not program or not pathlib.Path(program).exists():
        pytest.skip("the command is not built")
    questions = tmp_path / "list"
    questions.write_text("".join(f"Fe {i}um {5 + i % 90}\n"
                                 for i in range(1, 60000)))
    spread = run(EXAMPLES / "batch.sh", questions, ":", ATTENUATE=program,
                 HOME=str(tmp_path))
    whole = run(program, "--batch", questions, "--jsonl")
    assert len(spread.splitlines()) == 59999
    assert without_line_numbers(spread) == without_line_numbers(whole)


def without_line_numbers(answers: str) -> str:
    """Each piece of a list counts its own lines."""
    return re.sub(r'"line":\s*\d+,?', "", answers)


def test_figure_is_drawn(tmp_path: pathlib.Path) -> None:
    pytest.importorskip("matplotlib")
    figure = tmp_path / "figure.png"
    run(sys.executable, EXAMPLES / "transmission.py", figure,
        MPLCONFIGDIR=str(tmp_path))
    assert figure.read_bytes().startswith(b"\x89PNG")


@pytest.mark.parametrize("module", [attenuate, attenuate._physics])
def test_docstrings_are_true(module: types.ModuleType) -> None:
    result = doctest.testmod(module, extraglobs={"attenuate": attenuate},
                             optionflags=doctest.ELLIPSIS)
    assert result.attempted > 0 and result.failed == 0


@pytest.mark.parametrize("document", ["README.md", "docs/library-api.md"])
def test_code_of_documents_runs(document: str) -> None:
    blocks = re.findall(r"```python\n(.*?)```", (TOP / document).read_text(),
                        flags=re.S)
    assert blocks
    for block in blocks:
        exec(block, {"attenuate": attenuate})
