# The outcomes of the desktop test programs in Python, as outcomes.sh gives them to the scripts.


class Failure(Exception):
    pass


def check(condition, message):
    if not condition:
        raise Failure(message)


def report(run, arguments):
    """Runs the test with the arguments; 0 and "passed", or 1 and what failed."""
    try:
        run(*arguments)
    except Failure as failure:
        print(f"FAILED: {failure}")
        return 1
    print("passed")
    return 0
