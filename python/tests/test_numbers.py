"""Vectors and matrices: the same numbers for NumPy and the library."""

import gc

import numpy
import pytest

import zpbase


def test_numpy_shares_the_numbers_and_keeps_their_owner():
    vector, matrix, whole = zpbase.Vector([1, 2, 3]), zpbase.Matrix(2, 3), zpbase.IntVector(2, 7)
    for owner, dtype, shape in ((vector, "float64", (3,)), (matrix, "float64", (2, 3)), (whole, "int32", (2,))):
        array = numpy.asarray(owner)
        assert (array.dtype, array.shape, array.flags.c_contiguous) == (dtype, shape, True)
        assert numpy.shares_memory(array, numpy.asarray(owner))
    numpy.asarray(vector)[1] = 20
    numpy.asarray(matrix)[1] = [4, 5, 6]
    whole[-1] = -8
    assert (vector[1], matrix[1, 2], memoryview(whole).tolist()) == (20, 6, [7, -8])
    row = numpy.asarray(matrix)[1]
    del matrix, owner
    gc.collect()
    zpbase.Matrix(2, 3, 9.0)
    assert row.tolist() == [4, 5, 6]
    source = numpy.array([1.0, 2.0])
    assert not numpy.shares_memory(numpy.asarray(zpbase.Vector(source)), source)
    assert numpy.asarray(zpbase.Vector(0)).shape == (0,) and numpy.asarray(zpbase.Matrix(0, 4)).shape == (0, 4)
    assert numpy.asarray(zpbase.Matrix(numpy.arange(6.0).reshape(2, 3).T)).tolist() == [[0, 3], [1, 4], [2, 5]]


def test_arithmetic_and_equality():
    matrix = zpbase.Matrix([[1, 2], [3, 4]])
    assert matrix @ zpbase.Vector([1, 1]) == zpbase.Vector([3, 7])
    assert matrix @ matrix == zpbase.Matrix([[7, 10], [15, 22]])
    for one in (matrix, zpbase.Vector(2), zpbase.IntVector(2)):
        assert ((one == one), (one == type(one)(numpy.asarray(one) + 1))) == (True, False) and type(one == one) is bool
    three = zpbase.Vector([2, 3, 6])
    assert (three.sum(), three.norm(), three.dot(zpbase.Vector(3, 1.0))) == (11, 7, 11)
    assert zpbase.Vector(numpy.array([5])) == zpbase.Vector([5.0]), "one whole number in an array is no size"
    assert zpbase.Vector([0.0]) != zpbase.Vector([-0.0]) and repr(three) == "Vector([2.0, 3.0, 6.0])"


@pytest.mark.parametrize(
    "kind, wrong",
    [
        (IndexError, lambda: zpbase.Vector(2)[2]),
        (IndexError, lambda: zpbase.Vector(2)[-3]),
        (IndexError, lambda: zpbase.Matrix(2, 2)[0, 2]),
        (ValueError, lambda: zpbase.Vector(-1)),
        (ValueError, lambda: zpbase.Vector([[1.0]])),
        (ValueError, lambda: zpbase.Matrix([1.0])),
        (ValueError, lambda: zpbase.Vector(2).dot(zpbase.Vector(3))),
        (ValueError, lambda: zpbase.Matrix(2, 3) @ zpbase.Vector(2)),
        (ValueError, lambda: zpbase.Matrix(2, 3) @ zpbase.Matrix(2, 3)),
        (MemoryError, lambda: zpbase.Vector(2**40)),
        (MemoryError, lambda: zpbase.Matrix(2**31 - 1, 2**31 - 1)),
        (MemoryError, lambda: zpbase.Vector(numpy.broadcast_to(numpy.float32(1), 2**44))),
        (TypeError, lambda: zpbase.Vector("abc")),
        (TypeError, lambda: memoryview(zpbase.Vector.__new__(zpbase.Vector))),
        (TypeError, lambda: zpbase.Vector(1).dot(zpbase.Vector.__new__(zpbase.Vector))),
        (TypeError, lambda: zpbase.IntVector([0.5])),
        (ValueError, lambda: zpbase.IntVector([2**32 - 1])),
        (ValueError, lambda: zpbase.IntVector([[1]])),
        (TypeError, lambda: hash(zpbase.Vector(1))),
    ],
)
def test_refusals(kind, wrong):
    with pytest.raises(kind):
        wrong()
