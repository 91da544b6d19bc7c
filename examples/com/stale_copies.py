# SPDX-License-Identifier: Apache-2.0
"""Lists the hard copies that are not of the revision in force. Needs 64-bit Python and pywin32.

  python stale_copies.py REGISTER USER
"""
import getpass
import sys

import pythoncom
import win32com.client


def main(register, user):
    vesk = win32com.client.Dispatch("KvVesk.clsVesk")
    try:
        vesk.OpenConnection("Data Source=" + register)
        vesk.Login(user, getpass.getpass())
        copies = vesk.Releases(HardCopies=True)
        while not copies.EOF:
            field = lambda name: copies.Fields.Item(name).Value
            # A document without a revision in force has None there.
            if field("CurrentRevID") is not None and field("RevisionID") != field("CurrentRevID"):
                print(vesk.User.getUserName(field("UserID")), field("DocumentNumber"),
                      field("RevisionLevel"), field("CurrentRevisionLevel"), sep="\t")
            copies.MoveNext()
        copies.Close()
        vesk.CloseSession()
    except pythoncom.com_error as refused:
        # (number of the call, its text, (code, source, description, help file, context, number), argument)
        _, source, description, *_, number = refused.excepinfo
        sys.exit(f"error {number} ({source}): {description}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
