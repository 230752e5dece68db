# Chain (ABCD) parameters of each section circuit, with op-amp gain A and output resistance Ro.
#!/usr/bin/python3
"""Derives the chain parameters of the seven section circuits (and the first-order variants of
the high passes) from their node equations, and prints them as the derived functions of
src/circuit/Sectionchains.cpp.

Run with Debian's interpreter and python3-sympy:

    /usr/bin/python3 docs/derivations/section_chains.py

The op amp is a source A*(v(p) - v(m)) behind the output resistance Ro. Each section is solved
twice with a one-volt input: output open (I2 = 0) and output shorted (V2 = 0); the four chain
parameters A = V1/V2, C = I1/V2, B = V1/I2, D = I1/I2 are brought over one common denominator,
and every coefficient is checked to be a line in A. Paste the output over the derived
functions after changing a circuit.
"""
import sympy as sp, sys
s,A,Ro=sp.symbols('s A Ro')
R1,R2,R3,R4,C1,C2,Ca,Cb,Cc=sp.symbols('R1 R2 R3 R4 C1 C2 Ca Cb Cc')
def Y(kind,val): return 1/val if kind=='R' else s*val
def solve_case(nodes, parts, p, m, short):
    V={n:sp.Symbol('v'+n) for n in nodes}
    V['in']=1; V['gnd']=0
    if short: V['out']=0
    unknown=[n for n in nodes if not (short and n=='out')]
    x=A*(V[p]-V[m])
    eqs=[]
    for n in unknown:
        cur=0
        for kind,a,b,val in parts:
            y=Y(kind,val)
            if a==n: cur+=(V[a]-V[b])*y
            if b==n: cur+=(V[b]-V[a])*y
        if n=='out': cur+=(V['out']-x)/Ro
        eqs.append(cur)
    sol=sp.solve(eqs,[V[n] for n in unknown],dict=True)[0]
    sub=lambda e: sp.sympify(e).subs({V[n]:sol[V[n]] for n in unknown})
    I1=0
    for kind,a,b,val in parts:
        y=Y(kind,val)
        if a=='in': I1+=(1-sub(V[b]))*y
        if b=='in': I1+=(1-sub(V[a]))*y
    if not short:
        return sub(V['out']), sub(I1)
    # current leaving the section into the short at out
    I2=(sub(x)-0)/Ro
    for kind,a,b,val in parts:
        y=Y(kind,val)
        if a=='out': I2+=(sub(V[b])-0)*y
        if b=='out': I2+=(sub(V[a])-0)*y
    return sp.simplify(I2), sub(I1)
def polys(expr):
    num,den=sp.fraction(sp.cancel(sp.together(expr)))
    return sp.Poly(sp.expand(num),s,A), sp.Poly(sp.expand(den),s,A)
def coeffs(poly,deg):
    # returns [[c_i at A^0],[c_i at A^1]]
    out=[[0]*(deg+1),[0]*(deg+1)]
    for (i,j),c in poly.terms():
        assert j<=1, 'not linear in A'
        out[j][i]=c
    return out
def emit(name, nodes, parts, p, m, preamble):
    V2,I1o=solve_case(nodes,parts,p,m,False)
    I2,I1s=solve_case(nodes,parts,p,m,True)
    entries={'a':1/V2,'c':I1o/V2,'b':1/I2,'d':I1s/I2}
    D=sp.fraction(sp.cancel(sp.together(V2)))[0]
    scaled={k:sp.cancel(sp.together(e*D)) for k,e in entries.items()}
    lcm=1
    for k,e in scaled.items():
        n,d=sp.fraction(e)
        assert not d.has(s) and not d.has(A), (name,k,d)
        lcm=sp.lcm(lcm,d)
    D=sp.expand(D*lcm)
    res={k:sp.Poly(sp.expand(sp.cancel(e*lcm)),s,A) for k,e in scaled.items()}
    res['common']=sp.Poly(D,s,A)
    maxdeg=max(p.degree(s) for p in res.values())
    assert maxdeg<=3, (name, maxdeg)
    lines=[]
    for k in ('a','b','c','d','common'):
        cs=coeffs(res[k],3)
        for j in range(2):
            vals=[sp.ccode(sp.factor(c)) for c in cs[j]]
            lines.append('    p.%s.%s = {%s};'%(k,'slope' if j else 'at0',', '.join(vals)))
    print('ChainPolynomials %sChain(const WorkingComponents& c, double Ro) {'%name)
    print('    '+preamble)
    print('    ChainPolynomials p;')
    print('\n'.join(lines))
    print('    return p;\n}\n')
def parts_of(names): return 'const double ' + ', '.join('%s = c.%s' % (n, n) for n in names) + ';'
notch='const double R1 = c.R1, R2 = c.R2, R3 = c.R3, Ca = c.C1, Cb = c.SecondC1 > 0.0 ? c.SecondC1 : c.C1, Cc = c.C2;'
emit('VcvsLowPass',['a','p','m','out'],[('R','in','a',R1),('R','a','p',R2),('C','p','gnd',C1),('C','a','out',C2),('R','m','gnd',R3),('R','out','m',R4)],'p','m',parts_of(['R1','R2','R3','R4','C1','C2']))
emit('MfbLowPass',['a','m','out'],[('R','in','a',R1),('R','a','out',R2),('R','a','m',R3),('C','a','gnd',C2),('C','m','out',C1)],'gnd','m',parts_of(['R1','R2','R3','C1','C2']))
emit('VcvsHighPass',['a','p','m','out'],[('C','in','a',C1),('C','a','p',C2),('R','p','gnd',R2),('R','a','out',R1),('R','m','gnd',R3),('R','out','m',R4)],'p','m',parts_of(['R1','R2','R3','R4','C1','C2']))
emit('FirstOrderVcvsHighPass',['p','m','out'],[('C','in','p',C2),('R','p','gnd',R2),('R','m','gnd',R3),('R','out','m',R4)],'p','m',parts_of(['R2','R3','R4','C2']))
emit('MfbHighPass',['a','m','out'],[('C','in','a',C1),('C','a','m',C1),('C','a','out',C2),('R','a','gnd',R1),('R','m','out',R2)],'gnd','m',parts_of(['R1','R2','C1','C2']))
emit('FirstOrderMfbHighPass',['a','out'],[('C','in','a',C1),('C','a','out',C2),('R','a','out',R2)],'gnd','a',parts_of(['R2','C1','C2']))
emit('VcvsBandPass',['a','p','m','out'],[('R','in','a',R1),('C','a','gnd',C1),('C','a','p',C1),('R','p','gnd',R3),('R','a','out',R2),('R','out','m',R4),('R','m','gnd',R4)],'p','m',parts_of(['R1','R2','R3','R4','C1']))
emit('MfbBandPass',['a','m','out'],[('R','in','a',R1),('R','a','gnd',R2),('C','a','m',C2),('C','a','out',C1),('R','m','out',R3)],'gnd','m',parts_of(['R1','R2','R3','C1','C2']))
emit('Notch',['a','b','p','out'],[('R','in','a',R1),('R','a','p',R2),('C','a','gnd',Cc),('C','in','b',Ca),('C','b','p',Cb),('R','b','out',R3)],'p','out',notch)
