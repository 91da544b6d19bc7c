"""Lists the controlled documents that have no revision in force.

  python overdue.py REGISTER USER     64-bit, with pywin32; the password is in the variable KVVESK_PASSWORD
"""
import os
import sys

import win32com.client


def main(register, user):
    vesk = win32com.client.Dispatch("KvVesk.clsVesk")
    try:
        vesk.OpenConnection("Data Source=" + register)
        vesk.Login(user, os.environ["KVVESK_PASSWORD"])
        rs = vesk.GetRecordset("Select DocumentNumber, DocumentTitle From Documents "
                               "Where Controlled = True And IsNull(CurrentRevID) Order By DocumentNumber")
        while not rs.EOF:
            print(rs.Fields("DocumentNumber").Value, "", rs.Fields("DocumentTitle").Value)
            rs.MoveNext()
        rs.Close()
    finally:
        vesk.CloseSession()


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
