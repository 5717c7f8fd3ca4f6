import networks
import numpy as np
import pytest
from conftest import KEY, KEY_HEX, OTHER_KEY, archive_of, files_of, is_lent, status_of

import quavin


def test_a_network_is_described_without_loading_it(make_package):
    package = make_package(networks.arithmetic())
    float32 = np.dtype(np.float32)
    for source in (package, archive_of(package), files_of(package)):
        network = quavin.describe(source)
        assert [(p.name, p.dtype, p.shape) for p in network.inputs] == [
            ("left", float32, (2, 3)),
            ("right", float32, (2, 3)),
        ]
        assert [p.name for p in network.outputs] == ["product", "sum"]
    assert quavin.describe_files(package / "net.xml", package / "net.bin") == network
    assert quavin.describe_files(package / "net.xml") == network  # it has no constants


def test_a_secured_network_is_described_with_its_key(make_package):
    package = make_package(key_hex=KEY_HEX)
    assert quavin.describe(package, key=KEY).inputs[0].shape == (1, 4)
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.describe(package, key=OTHER_KEY)
    assert status_of(failure) == quavin.Status.FILE_ERROR


def test_files_that_are_described_are_given_back(make_package):
    files = files_of(make_package())
    quavin.describe(files)
    assert not any(map(is_lent, files.values()))
