# Lists the controlled documents that have no revision in force.
#   .\overdue.ps1 REGISTER USER     in 64-bit PowerShell; the password is in the variable KVVESK_PASSWORD
param([Parameter(Mandatory)] [string] $Register, [Parameter(Mandatory)] [string] $User)
$ErrorActionPreference = 'Stop'

$vesk = New-Object -ComObject KvVesk.clsVesk
try {
    $null = $vesk.OpenConnection("Data Source=$Register")
    $null = $vesk.Login($User, $env:KVVESK_PASSWORD)
    $rs = $vesk.GetRecordset('Select DocumentNumber, DocumentTitle From Documents ' +
        'Where Controlled = True And IsNull(CurrentRevID) Order By DocumentNumber')
    while (-not $rs.EOF) {
        [pscustomobject]@{
            Number = $rs.Fields.Item('DocumentNumber').Value
            Title  = $rs.Fields.Item('DocumentTitle').Value
        }
        $rs.MoveNext()
    }
    $rs.Close()
}
finally {
    $vesk.CloseSession()
}
