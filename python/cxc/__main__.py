"""python -m cxc"""

import sys

from .cli import main

sys.exit(main())
