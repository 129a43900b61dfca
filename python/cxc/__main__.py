"""python -m cxc"""

import sys

from .cli import main

# Processes of a study read this file again, under another name.
if __name__ == "__main__":
    sys.exit(main())
